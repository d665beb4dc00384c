#include "vcontrol/wavfile.h"

#include <array>
#include <limits>

namespace kestra {

namespace {

void put16(char* at, std::uint32_t v)
{
    at[0] = static_cast<char>(v & 0xff);
    at[1] = static_cast<char>((v >> 8) & 0xff);
}

void put32(char* at, std::uint32_t v)
{
    put16(at, v & 0xffff);
    put16(at + 2, v >> 16);
}

std::array<char, WavWriter::kHeaderBytes> header(const AudioFormat& format, std::uint32_t dataBytes)
{
    std::array<char, WavWriter::kHeaderBytes> h{};
    const std::uint32_t padded = dataBytes + (dataBytes & 1);
    std::copy_n("RIFF", 4, h.data());
    put32(h.data() + 4, 36 + padded);
    std::copy_n("WAVEfmt ", 8, h.data() + 8);
    put32(h.data() + 16, 16);  // size of the fmt chunk
    put16(h.data() + 20, 1);   // PCM
    put16(h.data() + 22, static_cast<std::uint32_t>(format.channels));
    put32(h.data() + 24, static_cast<std::uint32_t>(format.sampleRate));
    put32(h.data() + 28, static_cast<std::uint32_t>(format.bytesPerSecond()));
    put16(h.data() + 32, static_cast<std::uint32_t>(format.bytesPerFrame()));
    put16(h.data() + 34, static_cast<std::uint32_t>(format.bitsPerSample));
    std::copy_n("data", 4, h.data() + 36);
    put32(h.data() + 40, dataBytes);
    return h;
}

}  // namespace

WavWriter::~WavWriter()
{
    if (file_.is_open()) finish();
}

bool WavWriter::open(const std::filesystem::path& path, const AudioFormat& format)
{
    abandon();
    path_ = path;
    dataBytes_ = 0;
    failed_ = false;
    file_.open(path, std::ios::binary | std::ios::trunc);
    if (!file_) return false;
    const auto h = header(format, 0);
    file_.write(h.data(), h.size());
    if (!file_) {
        abandon();
        return false;
    }
    format_ = format;
    return true;
}

bool WavWriter::write(const char* data, std::size_t size)
{
    if (!file_.is_open() || failed_) return false;
    // A data chunk holds at most 4 GB less its header; the rest is dropped.
    const std::uint32_t room = std::numeric_limits<std::uint32_t>::max() - 64 - dataBytes_;
    if (size > room) size = room;
    file_.write(data, static_cast<std::streamsize>(size));
    if (!file_) {
        failed_ = true;
        return false;
    }
    dataBytes_ += static_cast<std::uint32_t>(size);
    return true;
}

bool WavWriter::finish()
{
    if (!file_.is_open()) return false;
    if (!failed_ && (dataBytes_ & 1)) file_.put('\0');
    if (!failed_) {
        const auto h = header(format_, dataBytes_);
        file_.seekp(0);
        file_.write(h.data(), h.size());
    }
    file_.close();
    const bool ok = !failed_ && !file_.fail();
    failed_ = false;
    return ok;
}

void WavWriter::abandon()
{
    if (file_.is_open()) file_.close();
    file_.clear();
}

}  // namespace kestra
