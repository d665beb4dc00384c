#include "platform/fake/scripteddialogs.h"
#include "platform/qt/qtrecorder.h"
#include "platform/qt/qtscheduler.h"
#include "vcontrol/audiorecorder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace kestra {
namespace {

// One second from the machine's own sound input, by the Record and Save
// buttons, through the real clock and QAudioSource: a WAV file of about that
// length in the chosen quality.
TEST(QtRecorder, RecordsASecondFromTheSoundCardIntoAWavFile)
{
    QtRecorder device;
    if (!device.hasDevice()) {
        // Without an input the recorder says so and stays quiet.
        QtScheduler scheduler;
        ScriptedDialogs dialogs;
        DisplayState display;
        Document document;
        QTemporaryDir dir;
        AudioRecorder recorder(scheduler, dialogs, device, display, document, dir.path().toStdString());
        recorder.load();
        recorder.record();
        recorder.save();
        ASSERT_EQ(dialogs.shown.size(), 1u);
        EXPECT_EQ(dialogs.shown[0].text, AudioRecorder::kNoDevice);
        EXPECT_TRUE(recorder.audiofail());
        GTEST_SKIP() << "this machine has no audio input to record from";
    }
    ASSERT_TRUE(device.open(""));
    const AudioFormat medium = AudioRecorder::formatOf(1);
    if (!device.supports(medium)) GTEST_SKIP() << "the audio input cannot capture 11025 Hz 16-bit mono";
    device.close();

    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::filesystem::path folder = dir.path().toStdString();
    QtScheduler scheduler;
    ScriptedDialogs dialogs;
    DisplayState display;
    Document document;
    AudioRecorder recorder(scheduler, dialogs, device, display, document, folder);
    recorder.load();
    recorder.setQuality(1);
    recorder.record();
    scheduler.wait(1.0);
    recorder.save();
    recorder.close();

    ASSERT_TRUE(dialogs.shown.empty()) << dialogs.shown.front().text;
    const std::filesystem::path file = recorder.lastFile();
    ASSERT_TRUE(std::filesystem::is_regular_file(file));
    std::ifstream in(file, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), {});
    ASSERT_GE(bytes.size(), 44u);
    const auto u32 = [&bytes](std::size_t at) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at])) |
               static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + 1])) << 8 |
               static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + 2])) << 16 |
               static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + 3])) << 24;
    };
    EXPECT_EQ(bytes.substr(0, 4), "RIFF");
    EXPECT_EQ(u32(24), 11025u);
    const std::uint32_t data = u32(40);
    EXPECT_EQ(bytes.size(), 44u + data + (data & 1));
    // A sound card delivers in buffers; a second is a second within half of one.
    EXPECT_GT(data, 22050u / 2);
    EXPECT_LT(data, 22050u * 3 / 2);
}

} // namespace
} // namespace kestra
