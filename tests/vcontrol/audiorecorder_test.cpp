#include "vcontrol/audiorecorder.h"

#include "core/memfile.h"
#include "platform/fake/fakerecorder.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

namespace kestra {
namespace {

namespace fs = std::filesystem;

// What Python's own wave module reads from a file: channels, sample width in
// bytes, rate, frames ("error" when it refuses the file).
std::string waveParams(const fs::path& file)
{
    const std::string command =
        "python3 -c \"import sys, wave\ntry:\n w = wave.open(sys.argv[1])\n print(w.getnchannels(), "
        "w.getsampwidth(), w.getframerate(), w.getnframes())\nexcept Exception as e:\n print('error', e)\" '" +
        file.string() + "' 2>&1";
    std::string out;
    if (FILE* pipe = popen(command.c_str(), "r")) {
        char buffer[256];
        while (fgets(buffer, sizeof buffer, pipe)) out += buffer;
        pclose(pipe);
    }
    while (!out.empty() && (out.back() == '\n' || out.back() == '\r')) out.pop_back();
    return out;
}

std::vector<fs::path> wavFiles(const fs::path& folder)
{
    std::vector<fs::path> files;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(folder, ec)) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

// The Virtual Control's side of the recorder: a display state the test turns
// Busy on and off in virtual time, a document, a wall clock that follows the
// virtual one from 1 February 2024 10:00:00.
struct Rig {
    test::TempDir dir;
    VirtualScheduler scheduler;
    ScriptedDialogs dialogs;
    std::unique_ptr<FakeRecorder> device;
    DisplayState display;
    Document document;
    std::unique_ptr<AudioRecorder> recorder;

    explicit Rig(std::vector<std::string> devices = {"Line In"}, const std::string& audioIni = {})
    {
        device = std::make_unique<FakeRecorder>(scheduler, std::move(devices));
        if (!audioIni.empty()) writeFileAtomic(dir.path() / "audio.ini", audioIni);
        recorder = std::make_unique<AudioRecorder>(scheduler, dialogs, *device, display, document, dir.path(),
                                                   [this] {
                                                       const auto s = scheduler.now() / 1000;
                                                       return DateTime{2024, 2, 1, 10, static_cast<int>(s / 60),
                                                                       static_cast<int>(s % 60)};
                                                   });
        display.freqtext = " 154.4150";
        recorder->load();
    }
    void busyAt(std::int64_t ms, bool on)
    {
        scheduler.post(ms, [this, on] { display.busyshown = on; });
    }
    fs::path audioFolder() const { return dir.path() / "audio"; }
};

TEST(AudioRecorder, OneTransmissionWithAFadeGivesOneWavFileOfTheBusyTimeAndTheDelay)
{
    for (const int quality : {0, 1}) {
        SCOPED_TRACE(quality);
        Rig rig({"Line In"}, "KES-VFO ini data v1.00\r\n[setup]\r\nqual=" + std::to_string(quality) +
                                 "\r\ndelay=500\r\ntrigger=0\r\n");
        EXPECT_EQ(rig.recorder->postBusyInterval(), 500);
        rig.recorder->startButton();
        // Busy 1.01 s .. 4.01 s with a 0.3 s fade inside the delay.
        rig.busyAt(1010, true);
        rig.busyAt(2510, false);
        rig.busyAt(2810, true);
        rig.busyAt(4010, false);
        rig.scheduler.advance(3000);
        EXPECT_EQ(rig.recorder->label27(), "Recording");
        EXPECT_EQ(rig.recorder->label28(), " 154.4150");
        rig.scheduler.advance(3000);
        EXPECT_EQ(rig.recorder->label27(), "");
        EXPECT_EQ(rig.recorder->label28(), "");

        // Started on the tick at 1.025 s, saved 500 ms after the tick at 4.025 s
        // that saw Busy gone: 3.5 s of samples. No capture file is left behind.
        const auto files = wavFiles(rig.audioFolder());
        ASSERT_EQ(files.size(), 1u);
        EXPECT_EQ(files[0].filename(), "audio__154.4150_01-02-2024_10-00-01_to_01-02-2024_10-00-04.wav");
        EXPECT_EQ(rig.recorder->lastFile(), files[0]);
        const AudioFormat format = AudioRecorder::formatOf(quality);
        const std::int64_t frames = 3500LL * format.sampleRate / 1000;
        EXPECT_EQ(waveParams(files[0]), "1 " + std::to_string(format.bitsPerSample / 8) + " " +
                                            std::to_string(format.sampleRate) + " " + std::to_string(frames));
        // The samples are the device's, in order, behind the 44-byte header.
        const std::string bytes = test::readBytes(files[0]);
        ASSERT_GE(bytes.size(), 44 + frames * format.bytesPerFrame());
        for (std::int64_t f = 0; f < frames; f += 997) {
            const unsigned char* at = reinterpret_cast<const unsigned char*>(bytes.data()) + 44 + f * format.bytesPerFrame();
            const int got = format.bitsPerSample == 8 ? at[0] : static_cast<std::int16_t>(at[0] | (at[1] << 8));
            ASSERT_EQ(got, FakeRecorder::sampleValue(format, f)) << "frame " << f;
        }
        EXPECT_TRUE(rig.dialogs.shown.empty());

        // Closing keeps the settings for the next run.
        rig.recorder->setDelay(2000);
        EXPECT_EQ(rig.recorder->close(), "");
        EXPECT_EQ(test::readBytes(rig.dir.path() / "audio.ini"),
                  "KES-VFO ini data v1.00\r\n[setup]\r\nqual=" + std::to_string(quality) +
                      "\r\ndelay=1000\r\ntrigger=0\r\n");
    }
}

TEST(AudioRecorder, ManualControlRecordOutAndTheStopButton)
{
    Rig rig;
    rig.recorder->setAudioPath((rig.dir.path() / "my recordings").string() + "/");
    fs::create_directories(rig.dir.path() / "my recordings");
    rig.recorder->setDelay(100);

    // "Audio Recording ON" is off: Busy records nothing. The Record and Save
    // buttons record by hand.
    rig.busyAt(500, true);
    rig.busyAt(1500, false);
    rig.scheduler.advance(2000);
    EXPECT_TRUE(wavFiles(rig.dir.path() / "my recordings").empty());
    rig.recorder->record();
    rig.scheduler.advance(2000);
    rig.recorder->save();
    auto files = wavFiles(rig.dir.path() / "my recordings");
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].filename(), "audio__01-02-2024_10-00-02_to_01-02-2024_10-00-04.wav");
    EXPECT_EQ(waveParams(files[0]), "1 1 6000 12000");

    // Only channels whose record column is "1": channel 105 is bank 2, row 5.
    rig.recorder->setRecordOut(true);
    rig.recorder->startButton();
    rig.display.channeltext = "0105";
    rig.display.trunkmode = 1;
    rig.display.trunkid = "  2345";
    rig.document.cell(1, 5, col::record) = "0";
    rig.busyAt(5000, true);
    rig.scheduler.advance(2000);  // 6.0 s
    EXPECT_EQ(rig.recorder->recordOut().bank, 2);
    EXPECT_EQ(rig.recorder->recordOut().row, 5);
    EXPECT_EQ(rig.recorder->label27(), "");
    rig.document.cell(1, 5, col::record) = "1";
    rig.scheduler.advance(1000);  // 7.0 s, recording since 6.025 s
    EXPECT_EQ(rig.recorder->label27(), "Recording");
    EXPECT_EQ(rig.recorder->label29(), "2345");

    // Stop saves at once, with Busy still on, and nothing starts again.
    rig.recorder->stopButton();
    rig.scheduler.advance(2000);
    EXPECT_EQ(rig.recorder->label27(), "");
    files = wavFiles(rig.dir.path() / "my recordings");
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[1].filename(), "audio__154.4150_2345_01-02-2024_10-00-06_to_01-02-2024_10-00-07.wav");
    EXPECT_EQ(waveParams(files[1]), "1 1 6000 5850");

    // A search mode: no channel number, bank 1 and row 0, which is never "1".
    rig.display.channeltext = "SRCH";
    rig.recorder->startButton();
    rig.scheduler.advance(1000);
    EXPECT_EQ(rig.recorder->recordOut().bank, 1);
    EXPECT_EQ(rig.recorder->recordOut().row, 0);
    EXPECT_EQ(rig.recorder->label27(), "");
    EXPECT_TRUE(rig.dialogs.shown.empty());
}

TEST(AudioRecorder, WithoutACaptureDeviceItSaysSoOnceAndStaysQuiet)
{
    // A delay out of range: the slider at 100, Timer5 at 1000; quality 7 sets nothing.
    Rig rig({}, "KES-VFO ini data v1.00\r\n[setup]\r\nqual=7\r\ndelay=5000\r\ntrigger=1\r\n");
    EXPECT_EQ(rig.recorder->delay(), 100);
    EXPECT_EQ(rig.recorder->postBusyInterval(), 1000);
    EXPECT_EQ(rig.recorder->quality(), 0);
    EXPECT_EQ(rig.recorder->trigger(), 1);

    rig.recorder->startButton();
    for (int i = 0; i < 3; ++i) {
        rig.busyAt(rig.scheduler.now() + 200, true);
        rig.busyAt(rig.scheduler.now() + 1200, false);
        rig.scheduler.advance(3000);
    }
    ASSERT_EQ(rig.dialogs.shown.size(), 1u);
    EXPECT_EQ(rig.dialogs.shown[0].text, "No audio device, recording disabled");
    EXPECT_TRUE(rig.recorder->audiofail());
    EXPECT_FALSE(rig.recorder->recording());
    EXPECT_TRUE(wavFiles(rig.audioFolder()).empty());
    // The buttons do nothing more either; closing still keeps the settings.
    rig.recorder->record();
    rig.recorder->save();
    EXPECT_EQ(rig.dialogs.shown.size(), 1u);
    EXPECT_EQ(rig.recorder->close(), "");
    EXPECT_EQ(test::readBytes(rig.dir.path() / "audio.ini"),
              "KES-VFO ini data v1.00\r\n[setup]\r\nqual=0\r\ndelay=100\r\ntrigger=1\r\n");
}

} // namespace
} // namespace kestra
