#include "vcontrol/audiorecorder.h"

#include "core/cellcodes.h"
#include "core/inifile.h"
#include "core/memfile.h"
#include "core/text.h"

#include <cstdio>
#include <system_error>

namespace kestra {

// ---- audio.ini ------------------------------------------------------------------

AudioIni AudioIni::load(const std::filesystem::path& folder)
{
    AudioIni a;
    std::string bytes;
    if (!readFileBytes(folder / kFileName, bytes)) return a;
    const IniFile ini = IniFile::parse(bytes);
    const auto number = [&ini](const char* key) -> std::optional<int> {
        const auto value = ini.get("setup", key);
        if (!value) return std::nullopt;
        return static_cast<int>(IntVal(*value));
    };
    a.qual = number("qual");
    a.delay = number("delay");
    a.trigger = number("trigger");
    return a;
}

std::string AudioIni::text(int quality, int delay, int trigger)
{
    return std::string(kFirstLine) + "\r\n[setup]\r\nqual=" + std::to_string(quality) + "\r\ndelay=" +
           std::to_string(delay) + "\r\ntrigger=" + std::to_string(trigger) + "\r\n";
}

// ---- the recorder ---------------------------------------------------------------

AudioFormat AudioRecorder::formatOf(int quality)
{
    if (quality == 1) return {11025, 1, 16};
    return {6000, 1, 8};
}

AudioRecorder::AudioRecorder(Scheduler& scheduler, Dialogs& dialogs, Recorder& recorder, const DisplayState& display,
                             const Document& document, std::filesystem::path programFolder, Clock clock)
    : scheduler_(scheduler), dialogs_(dialogs), recorder_(recorder), display_(display), document_(document),
      programFolder_(std::move(programFolder)), clock_(std::move(clock))
{
    timer9_ = makeTimer(scheduler_, kTriggerMs, false, [this] { tick(); });
    timer5_ = makeTimer(scheduler_, kDefaultDelayMs, false, [this] { postBusy(); });
}

AudioRecorder::~AudioRecorder()
{
    timer9_->setEnabled(false);
    timer5_->setEnabled(false);
    dropCapture();
}

void AudioRecorder::load()
{
    const AudioIni ini = AudioIni::load(programFolder_);
    if (ini.delay && *ini.delay >= kMinDelayMs && *ini.delay <= kMaxDelayMs) {
        delay_ = *ini.delay;
        timer5_->setInterval(delay_);
    } else {
        // The slider stays at its lowest, the timer at its design value.
        delay_ = kMinDelayMs;
        timer5_->setInterval(kDefaultDelayMs);
    }
    if (ini.qual && (*ini.qual == 0 || *ini.qual == 1)) quality_ = *ini.qual;
    if (ini.trigger && (*ini.trigger == 0 || *ini.trigger == 1)) trigger_ = *ini.trigger;
    prepare();
    timer9_->setEnabled(true);
    notify();
}

std::string AudioRecorder::close()
{
    timer9_->setEnabled(false);
    timer5_->setEnabled(false);
    const std::string written =
        writeFileAtomic(programFolder_ / AudioIni::kFileName, AudioIni::text(quality_, delay_, trigger_));
    audioreset();
    recorder_.close();
    return written;
}

void AudioRecorder::setQuality(int quality)
{
    if (quality != 0 && quality != 1) return;
    quality_ = quality;
    prepare();
    notify();
}

void AudioRecorder::setDelay(int ms)
{
    delay_ = ms < kMinDelayMs ? kMinDelayMs : ms > kMaxDelayMs ? kMaxDelayMs : ms;
    timer5_->setInterval(delay_);
    notify();
}

int AudioRecorder::postBusyInterval() const { return timer5_->interval(); }

std::filesystem::path AudioRecorder::folder() const
{
    const std::string lower = asciiLower(trim(audiopath_));
    if (lower.empty() || lower == "c:\\" || lower == "c:") return programFolder_ / kDefaultFolderName;
    return std::filesystem::path(audiopath_);
}

void AudioRecorder::startButton()
{
    on_ = true;
    startEnabled_ = false;
    stopEnabled_ = true;
    notify();
}

void AudioRecorder::stopButton()
{
    on_ = false;
    startEnabled_ = true;
    stopEnabled_ = false;
    setLabel27("");
    notify();
}

// ---- Timer9 and Timer5 ----------------------------------------------------------

void AudioRecorder::tick()
{
    if (audiofail_ || !on_) return;
    bool busy = display_.busyshown;
    if (recordOut_) {
        RecordOut view;
        view.channel = static_cast<int>(Val(display_.channeltext));
        view.bank = (view.channel - 1) / 100 + 1;
        view.row = view.channel - 100 * (view.bank - 1);
        if (view.bank >= 1 && view.bank <= kBanks && view.row >= 0 && view.row < kRows)
            view.value = document_.cell(view.bank - 1, view.row, col::record);
        const bool moved = view.channel != recordOutView_.channel || view.bank != recordOutView_.bank ||
                           view.row != recordOutView_.row || view.value != recordOutView_.value;
        recordOutView_ = view;
        if (moved) notify();
        busy = busy && view.value == "1";
    }
    if (busy)
        busyNow();
    else if (!timer5_->enabled())
        // Enabling an enabled timer would start its countdown again, and it
        // would never run out while this tick keeps coming.
        timer5_->setEnabled(true);
}

void AudioRecorder::busyNow()
{
    const std::string freq = display_.freqtext;
    const std::string id = display_.trunkmode == 1 ? ltrim(display_.trunkid) : std::string();
    setLabel27(kRecording);
    if (freq != label28_ || id != label29_) {
        label28_ = freq;
        label29_ = id;
        notify();
    }
    timer5_->setEnabled(false);
}

void AudioRecorder::postBusy()
{
    // Busy came back: the next tick turns this timer off.
    if (display_.busyshown) return;
    setLabel27("");
    timer5_->setEnabled(false);
    if (!label28_.empty()) {
        label28_.clear();
        notify();
    }
}

void AudioRecorder::setLabel27(const std::string& text)
{
    if (text == label27_) return;
    label27_ = text;
    if (text == kRecording)
        record();
    else if (text.empty())
        save();
    notify();
}

// ---- the device -----------------------------------------------------------------

void AudioRecorder::prepare()
{
    audioreset();
    format_ = formatOf(quality_);
    audioreset();
}

void AudioRecorder::audioreset()
{
    dropCapture();
    recorder_.close();
    recorder_.open("");
}

bool AudioRecorder::audioformat()
{
    if (recorder_.isOpen() && recorder_.supports(format_)) return true;
    audiofail_ = true;
    dialogs_.message(kNoDevice);
    return false;
}

bool AudioRecorder::audiorec()
{
    std::error_code ec;
    const std::filesystem::path dir = folder();
    std::filesystem::create_directories(dir, ec);
    // A capture file that cannot be made still lets the device run; the save
    // then says that it failed.
    wav_ = std::make_unique<WavWriter>();
    wav_->open(dir / kCaptureName, format_);
    const bool started = recorder_.start(format_, [this](const char* data, std::size_t size) {
        if (wav_) wav_->write(data, size);
    });
    if (!started) {
        dropCapture();
        audiofail_ = true;
        dialogs_.message(kRecordFailed);
        return false;
    }
    if (onStarted) onStarted();
    return true;
}

void AudioRecorder::dropCapture()
{
    if (recorder_.capturing()) recorder_.stop();
    if (wav_) {
        const std::filesystem::path path = wav_->path();
        const bool made = wav_->isOpen();
        wav_->abandon();
        wav_.reset();
        std::error_code ec;
        if (made) std::filesystem::remove(path, ec);
    }
}

// ---- the buttons Record, Save and Reset -----------------------------------------

void AudioRecorder::record()
{
    if (audiofail_) return;
    audioreset();
    if (!audioformat()) return;
    if (!audiorec()) return;
    recstart_ = timeText(clock_());
}

void AudioRecorder::save()
{
    if (audiofail_) return;
    if (recorder_.capturing() && !recorder_.stop()) dialogs_.message(kStopFailed);
    recstop_ = timeText(clock_());
    const std::filesystem::path target = folder() / (fileName(label28_, label29_, recstart_, recstop_) + ".wav");

    bool ok = false;
    std::error_code ec;
    if (wav_) {
        const std::filesystem::path capture = wav_->path();
        const bool made = wav_->isOpen();
        ok = wav_->finish();
        wav_.reset();
        if (ok) {
            std::filesystem::remove(target, ec);
            ec.clear();
            std::filesystem::rename(capture, target, ec);
            if (ec) {
                // Another file system (the folder was changed meanwhile).
                ec.clear();
                ok = std::filesystem::copy_file(capture, target, ec) && !ec;
                std::filesystem::remove(capture, ec);
            }
        } else if (made) {
            std::filesystem::remove(capture, ec);
        }
    } else {
        // Nothing was recorded since the device was reset: an empty recording.
        std::filesystem::create_directories(target.parent_path(), ec);
        WavWriter empty;
        std::filesystem::remove(target, ec);
        ok = empty.open(target, format_) && empty.finish();
    }
    if (ok) {
        lastFile_ = target;
        if (onSaved) onSaved(target);
    } else
        dialogs_.message(kSaveFailed);
    audioreset();
}

void AudioRecorder::reset()
{
    recordEnabled_ = true;
    saveEnabled_ = false;
    audioreset();
    audioformat();
    notify();
}

void AudioRecorder::properties(const std::function<void()>& show)
{
    save();
    const bool was = audiofail_;
    audiofail_ = true;
    if (show) show();
    prepare();
    timer5_->setInterval(delay_);
    audiofail_ = was;
    notify();
}

// ---- names ----------------------------------------------------------------------

std::string AudioRecorder::fileName(const std::string& freq, const std::string& id, const std::string& start,
                                    const std::string& stop)
{
    std::string name = "audio_" + freq + "_" + (id.empty() ? std::string() : id + "_") + start + "_to_" + stop;
    for (char& c : name) {
        if (c == ':') c = '-';
        if (c == ' ') c = '_';
    }
    for (char& c : name)
        if (c == '/') c = '-';
    return name;
}

std::string AudioRecorder::timeText(const DateTime& when)
{
    char text[40];
    std::snprintf(text, sizeof text, "%02d/%02d/%04d %02d:%02d:%02d", when.day, when.month, when.year, when.hour,
                  when.minute, when.second);
    return text;
}

void AudioRecorder::notify()
{
    if (changed) changed();
}

} // namespace kestra
