#pragma once
// The Virtual Control's audio recorder: one WAV file per transmission, named
// after frequency, trunk ID and the times of start and stop.
//
// Timer9 (25 ms) watches the Busy indicator. While Busy shows it puts
// "Recording" into Label27 and the frequency and ID into Label28 and Label29,
// and keeps Timer5 off; while it does not, it turns Timer5 on. Timer5 is the
// post busy delay (100..1000 ms): when it runs out with Busy still off,
// Label27 is emptied. Label27 is the link between the two: its text changing
// to "Recording" starts a recording (as the "Record" button does), changing to
// empty stops and saves it (as the "Save" button does). Repeated ticks during
// one transmission change nothing, so a short fade of the signal inside the
// delay keeps one file.
//
// The samples stream into "~capture.wav" in the audio folder while recording;
// saving fixes up its header and gives it its name. When no capture device can
// be used (or not in the chosen quality), audiofail is set and the recorder
// stays inert for the rest of the run.

#include "core/document.h"
#include "editor/backup.h"
#include "platform/dialogs.h"
#include "platform/recorder.h"
#include "platform/scheduler.h"
#include "vcontrol/displaystate.h"
#include "vcontrol/wavfile.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kestra {

// audio.ini in the program's folder.
struct AudioIni {
    static constexpr const char* kFileName = "audio.ini";
    static constexpr const char* kFirstLine = "KES-VFO ini data v1.00";

    // As found in the file; nothing when the key is missing.
    std::optional<int> qual, delay, trigger;

    static AudioIni load(const std::filesystem::path& folder);
    static std::string text(int quality, int delay, int trigger);
};

class AudioRecorder {
public:
    static constexpr int kTriggerMs = 25;        // Timer9
    static constexpr int kDefaultDelayMs = 1000; // Timer5 when audio.ini has no usable delay
    static constexpr int kMinDelayMs = 100;
    static constexpr int kMaxDelayMs = 1000;
    static constexpr const char* kCaptureName = "~capture.wav";
    static constexpr const char* kDefaultFolderName = "audio";

    static constexpr const char* kRecording = "Recording";
    static constexpr const char* kNoDevice = "No audio device, recording disabled";
    static constexpr const char* kRecordFailed = "No Audio Recording Device Available..";
    static constexpr const char* kStopFailed = "Stopping recording failed!";
    static constexpr const char* kSaveFailed = "Saving recording failed!";

    // The formats of "Audio Quality:": 0 Low, 1 Medium.
    static AudioFormat formatOf(int quality);

    // What "Use Record Out parameter" looks at (Text11, Text13, Text14, Text15).
    struct RecordOut {
        int channel = 0;
        int bank = 1;
        int row = 0;
        std::string value;
    };

    using Clock = std::function<DateTime()>;

    // programFolder: where audio.ini lives and where the default audio folder
    // is made. document: the channels whose record column "Use Record Out
    // parameter" reads. display: the Virtual Control's decoded state.
    AudioRecorder(Scheduler& scheduler, Dialogs& dialogs, Recorder& recorder, const DisplayState& display,
                  const Document& document, std::filesystem::path programFolder, Clock clock = localNow);
    ~AudioRecorder();

    // The window loads: audio.ini is read and the device prepared.
    void load();
    // The window closes: a recording running is given up, audio.ini written,
    // the device closed. Returns "" or what went wrong writing audio.ini.
    std::string close();

    // ---- the tab "Audio Rec." -------------------------------------------------
    void setQuality(int quality);  // prepares the device again
    int quality() const { return quality_; }
    void setTrigger(int trigger) { trigger_ = trigger; }  // kept, not read by the tick
    int trigger() const { return trigger_; }
    // The slider "Post busy delay before saving:", 100..1000 ms.
    void setDelay(int ms);
    int delay() const { return delay_; }
    int postBusyInterval() const;  // Timer5's interval

    // vfo.ini audiopath. "c:\" (the stored default) and "" mean the folder
    // "audio" in the program's folder.
    void setAudioPath(const std::string& audiopath) { audiopath_ = audiopath; }
    const std::string& audioPath() const { return audiopath_; }
    std::filesystem::path folder() const;

    // "Use Record Out parameter" (vfo.ini option8).
    void setRecordOut(bool on) { recordOut_ = on; }
    bool recordOutOn() const { return recordOut_; }
    const RecordOut& recordOut() const { return recordOutView_; }

    // "Audio Recording ON" and the buttons "Start" and "Stop".
    void startButton();
    void stopButton();  // also empties Label27, which saves a recording running
    void toggleRecordingOn() { on_ = !on_; }
    bool recordingOn() const { return on_; }
    bool startEnabled() const { return startEnabled_; }
    bool stopEnabled() const { return stopEnabled_; }

    // The buttons "Record", "Save" and "Reset".
    void record();
    void save();
    void reset();
    bool recordEnabled() const { return recordEnabled_; }
    bool saveEnabled() const { return saveEnabled_; }

    // The audio properties: saves what runs, keeps the recorder inert while
    // show() runs, prepares the device again afterwards.
    void properties(const std::function<void()>& show);

    // Label27, Label28, Label29. Setting Label27 to another text runs its change.
    void setLabel27(const std::string& text);
    const std::string& label27() const { return label27_; }
    const std::string& label28() const { return label28_; }
    const std::string& label29() const { return label29_; }

    bool audiofail() const { return audiofail_; }
    bool recording() const { return wav_ != nullptr; }
    // The last file saved.
    const std::filesystem::path& lastFile() const { return lastFile_; }

    // The file name of a recording, by the rule: every ":" becomes "-" and
    // every blank "_", then every "/" becomes "-".
    static std::string fileName(const std::string& freq, const std::string& id, const std::string& start,
                                const std::string& stop);
    // A moment as recstart and recstop hold it: "dd/mm/yyyy hh:mm:ss".
    static std::string timeText(const DateTime& when);

    // Called after every change the panel shows (labels, buttons, settings).
    std::function<void()> changed;
    // A recording began; one was saved under its name.
    std::function<void()> onStarted;
    std::function<void(const std::filesystem::path& file)> onSaved;

private:
    void tick();         // Timer9
    void postBusy();     // Timer5
    void busyNow();      // Busy is shown: Label27..29, Timer5 off
    void prepare();      // audioreset, format, audioreset
    void audioreset();
    bool audioformat();
    bool audiorec();
    void dropCapture();
    void notify();

    Scheduler& scheduler_;
    Dialogs& dialogs_;
    Recorder& recorder_;
    const DisplayState& display_;
    const Document& document_;
    std::filesystem::path programFolder_;
    Clock clock_;

    int quality_ = 0;
    int trigger_ = 0;
    int delay_ = kMinDelayMs;
    std::string audiopath_ = "c:\\";
    bool recordOut_ = false;
    RecordOut recordOutView_;
    AudioFormat format_ = formatOf(0);

    bool on_ = false;
    bool startEnabled_ = true, stopEnabled_ = false;
    bool recordEnabled_ = true, saveEnabled_ = false;
    bool audiofail_ = false;

    std::string label27_, label28_, label29_;
    std::string recstart_, recstop_;
    std::unique_ptr<WavWriter> wav_;
    std::filesystem::path lastFile_;

    std::unique_ptr<Timer> timer9_, timer5_;
};

} // namespace kestra
