#pragma once
// WAV files of the recorder: a RIFF/WAVE file with one "fmt " chunk (plain
// PCM) and one "data" chunk. The samples are written as they arrive; the
// header goes out first with sizes of zero and is fixed up by finish(), so a
// recording of any length never has to be held in memory.

#include "platform/recorder.h"

#include <cstdint>
#include <filesystem>
#include <fstream>

namespace kestra {

class WavWriter {
public:
    static constexpr std::size_t kHeaderBytes = 44;

    WavWriter() = default;
    ~WavWriter();
    WavWriter(const WavWriter&) = delete;
    WavWriter& operator=(const WavWriter&) = delete;

    // Creates (or replaces) the file and writes the header. False when the
    // file cannot be written.
    bool open(const std::filesystem::path& path, const AudioFormat& format);
    bool isOpen() const { return file_.is_open(); }

    // Appends PCM bytes. False once a write has failed.
    bool write(const char* data, std::size_t size);

    // Pads the data to an even length (RIFF chunks are word-aligned), writes
    // the real sizes into the header and closes the file. False when any
    // write failed on the way.
    bool finish();

    // Closes without fixing the header (the file is given up).
    void abandon();

    std::uint32_t dataBytes() const { return dataBytes_; }
    const std::filesystem::path& path() const { return path_; }

private:
    std::ofstream file_;
    std::filesystem::path path_;
    AudioFormat format_;
    std::uint32_t dataBytes_ = 0;
    bool failed_ = false;
};

} // namespace kestra
