#include "platform/linux/CanberraAudio.h"

#include "RecordingLog.h"
#include "TempDir.h"
#include "XdgSandbox.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <thread>

using namespace tarnwick;
using tarnwick::test::readFile;
using tarnwick::test::RecordingLog;
using tarnwick::test::TempDir;
using tarnwick::test::writeFile;
using tarnwick::test::xdgSandbox;
namespace fs = std::filesystem;

// g++ says so with __SANITIZE_ADDRESS__, clang only through __has_feature.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool underAddressSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool underAddressSanitizer = true;
#else
constexpr bool underAddressSanitizer = false;
#endif
#else
constexpr bool underAddressSanitizer = false;
#endif
#if defined(__SANITIZE_THREAD__)
constexpr bool underThreadSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
constexpr bool underThreadSanitizer = true;
#else
constexpr bool underThreadSanitizer = false;
#endif
#else
constexpr bool underThreadSanitizer = false;
#endif

namespace {

// A short 16-bit mono WAV of a square wave.
void writeWav(const std::string& path, int samples = 4410) {
    auto le = [](std::string& s, uint32_t v, int bytes) {
        for (int i = 0; i < bytes; ++i)
            s += static_cast<char>((v >> (8 * i)) & 0xff);
    };
    std::string data;
    for (int i = 0; i < samples; ++i)
        le(data, static_cast<uint16_t>((i / 50) % 2 ? 8000 : -8000), 2);
    std::string wav = "RIFF";
    le(wav, static_cast<uint32_t>(36 + data.size()), 4);
    wav += "WAVEfmt ";
    le(wav, 16, 4);
    le(wav, 1, 2);         // PCM
    le(wav, 1, 2);         // mono
    le(wav, 44100, 4);     // rate
    le(wav, 44100 * 2, 4); // bytes per second
    le(wav, 2, 2);         // block
    le(wav, 16, 2);        // bits
    wav += "data";
    le(wav, static_cast<uint32_t>(data.size()), 4);
    writeFile(path, wav + data);
}

} // namespace

TEST(CanberraAudio, ResourcesComeFromTheFirstFolderThatHasThem) {
    TempDir first, second;
    writeWav(second / "connect.wav");
    writeWav(first / "disconnect.wav");
    writeWav(second / "disconnect.wav");
    fs::create_directory(first / "folder.wav");
    RecordingLog log;
    CanberraAudio audio({first / "missing", first.path(), second.path()}, log);
    EXPECT_EQ(audio.resource("connect", "wav"), second / "connect.wav");
    EXPECT_EQ(audio.resource("disconnect", "wav"), first / "disconnect.wav");
    EXPECT_EQ(audio.resource("connect", "aiff"), std::nullopt);
    EXPECT_EQ(audio.resource("folder", "wav"), std::nullopt);
}

TEST(CanberraAudio, OnlyAWavFileLoads) {
    TempDir tmp;
    writeWav(tmp / "good.wav");
    writeFile(tmp / "text.wav", "this is not a sound at all");
    writeFile(tmp / "avi.wav", std::string("RIFF\x10\0\0\0AVI LIST", 16));
    writeFile(tmp / "short.wav", "RIFF");
    RecordingLog log;
    CanberraAudio audio({tmp.path()}, log);
    EXPECT_TRUE(audio.load(tmp / "good.wav"));
    for (const char* bad : {"missing.wav", "text.wav", "avi.wav", "short.wav", ""}) {
        SCOPED_TRACE(bad);
        EXPECT_EQ(audio.load(tmp / bad), nullptr);
    }
}

TEST(CanberraAudio, PlayingWithoutASoundDeviceNeitherCrashesNorFloodsTheLog) {
    TempDir tmp;
    writeWav(tmp / "chime.wav");
    RecordingLog log;
    std::shared_ptr<AudioClip> survivor;
    {
        CanberraAudio audio({tmp.path()}, log);
        auto a = audio.load(tmp / "chime.wav");
        auto b = audio.load(tmp / "chime.wav");
        ASSERT_TRUE(a && b);
        for (int i = 0; i < 3; ++i) {
            a->play();
            b->play();
        }
        a->stop();
        b->stop();
        b->stop();
        survivor = a;
    }
    // A clip outlives the audio it came from.
    survivor->play();
    survivor->stop();
    EXPECT_LE(log.lines().size(), 1u);
}

TEST(CanberraAudio, PlaysTheFileThroughTheDefaultDevice) {
    // libcanberra's ALSA playback thread, which we do not build, now and then
    // jumps into unmapped memory under AddressSanitizer, and under
    // ThreadSanitizer too once a machine has PulseAudio's ALSA plugins (never
    // without a sanitizer).
    if (underAddressSanitizer || underThreadSanitizer) GTEST_SKIP() << "not under a sanitizer";
    // ALSA's default device becomes a WAV file: what we play lands there.
    TempDir tmp;
    writeWav(tmp / "chime.wav", 8820);
    std::string conf = xdgSandbox() + "/asound.conf";
    std::string original = readFile(conf);
    writeFile(conf, original + "pcm.!default { type file slave.pcm \"null\" file \"" +
                        tmp / "out.wav" + "\" format \"wav\" }\n");
    RecordingLog log;
    {
        CanberraAudio audio({tmp.path()}, log);
        auto clip = audio.load(tmp / "chime.wav");
        ASSERT_TRUE(clip);
        clip->play();
        auto expected = fs::file_size(tmp / "chime.wav");
        for (int i = 0; i < 250; ++i) {
            std::error_code ec;
            if (fs::file_size(tmp / "out.wav", ec) >= expected && !ec) break;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    writeFile(conf, original);
    EXPECT_TRUE(log.lines().empty()) << log.lines()[0];
    std::string played = readFile(tmp / "out.wav");
    std::string source = readFile(tmp / "chime.wav");
    ASSERT_EQ(played.size(), source.size());
    EXPECT_TRUE(played.substr(44) == source.substr(44)) << "the samples differ";
}
