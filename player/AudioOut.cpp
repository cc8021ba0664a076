#include "player/AudioOut.h"

#include <miniaudio.h>

#include <algorithm>
#include <stdexcept>

#include "platform/Console.h"
#include "player/ProgramName.h"

namespace player
{
namespace
{
constexpr ma_uint32 channels = 2;

// One part of the system that plays sound, while this lives.
class System
{
public:
    explicit System (ma_backend backend)
    {
        const platform::QuietErrors quiet; // those that are not there say so
        ma_context_config config = ma_context_config_init ();
        config.pulse.pApplicationName = programName;
        config.jack.pClientName = programName;
        isOpen = ma_context_init (&backend, 1, &config, &context) == MA_SUCCESS;
    }
    ~System ()
    {
        if (isOpen)
            ma_context_uninit (&context);
    }
    System (const System&) = delete;
    System& operator= (const System&) = delete;

    // Null when the system lacks this part.
    ma_context* get () { return isOpen ? &context : nullptr; }

    std::span<const ma_device_info> playbackDevices ()
    {
        const platform::QuietErrors quiet;
        ma_device_info* found = nullptr;
        ma_uint32 count = 0;
        if (!isOpen || ma_context_get_devices (&context, &found, &count, nullptr, nullptr) != MA_SUCCESS)
            return {};
        return { found, count };
    }

private:
    ma_context context = {};
    bool isOpen = false;
};

std::vector<ma_backend> backends ()
{
    std::vector<ma_backend> all (MA_BACKEND_COUNT);
    std::size_t count = 0;
    ma_get_enabled_backends (all.data (), all.size (), &count);
    all.resize (count);
    std::erase_if (all, [] (ma_backend backend)
                   { return backend == ma_backend_null || backend == ma_backend_custom; });
    return all;
}

struct Found
{
    ma_backend backend;
    ma_device_id id;
};

// All devices, and the same as the library knows them.
std::pair<std::vector<Device>, std::vector<Found>> findAll ()
{
    std::pair<std::vector<Device>, std::vector<Found>> all;
    for (const ma_backend backend : backends ())
    {
        System system (backend);
        for (const ma_device_info& info : system.playbackDevices ())
        {
            all.first.push_back ({ info.name, ma_get_backend_name (backend) });
            all.second.push_back ({ backend, info.id });
        }
    }
    return all;
}

class MiniaudioOut final : public AudioOut
{
public:
    // A null id: the default device. Null when it cannot be opened.
    static std::unique_ptr<AudioOut> open (ma_backend backend, const ma_device_id* id,
                                           const AudioSettings& settings)
    {
        auto out = std::make_unique<MiniaudioOut> (backend);
        return out->openDevice (id, settings) ? std::move (out) : nullptr;
    }

    explicit MiniaudioOut (ma_backend backend) : system (backend) {}

    ~MiniaudioOut () override
    {
        if (isOpen)
            ma_device_uninit (&device);
    }

    const std::string& name () const override { return deviceName; }
    std::uint32_t sampleRate () const override { return device.sampleRate; }

    void start (AudioSource& newSource) override
    {
        source = &newSource;
        if (ma_device_start (&device) != MA_SUCCESS)
            throw std::runtime_error ("the audio device \"" + deviceName + "\" does not start");
    }

    bool isRunning () const override { return ma_device_is_started (&device) != MA_FALSE; }

private:
    bool openDevice (const ma_device_id* id, const AudioSettings& settings)
    {
        if (system.get () == nullptr)
            return false;
        const platform::QuietErrors quiet;
        ma_device_config config = ma_device_config_init (ma_device_type_playback);
        config.playback.pDeviceID = id;
        config.playback.format = ma_format_f32;
        config.playback.channels = channels;
        config.sampleRate = settings.sampleRate;
        config.periodSizeInFrames = settings.period;
        config.dataCallback = &render;
        config.pUserData = this;
        isOpen = ma_device_init (system.get (), &config, &device) == MA_SUCCESS;
        deviceName = isOpen ? device.playback.name : "";
        return isOpen;
    }

    static void render (ma_device* device, void* output, const void* /*input*/, ma_uint32 frames)
    {
        static_cast<MiniaudioOut*> (device->pUserData)->source->render (static_cast<float*> (output), frames);
    }

    System system; // outlives its device
    ma_device device = {};
    bool isOpen = false;
    std::string deviceName;
    AudioSource* source = nullptr;
};
}

std::vector<Device> AudioOut::devices ()
{
    return findAll ().first;
}

std::unique_ptr<AudioOut> AudioOut::open (const AudioSettings& settings)
{
    if (settings.device.isAny ())
    {
        for (const ma_backend backend : backends ())
        {
            if (auto out = MiniaudioOut::open (backend, nullptr, settings))
                return out;
        }
        throw std::runtime_error ("no audio device was found");
    }
    const auto [devices, found] = findAll ();
    const auto index = findDevice (devices, settings.device);
    if (!index)
    {
        const std::string& text = settings.device.text;
        throw std::runtime_error (text.empty () ? "the audio device that was chosen last is not there"
                                                : "no audio device is called \"" + text +
                                                      "\"; --list-devices shows those that there are");
    }
    auto out = MiniaudioOut::open (found[*index].backend, &found[*index].id, settings);
    if (out == nullptr)
        throw std::runtime_error ("the audio device \"" + devices[*index].name + "\" cannot be opened");
    return out;
}

std::unique_ptr<AudioOut> AudioOut::openSilent (const AudioSettings& settings)
{
    auto out = MiniaudioOut::open (ma_backend_null, nullptr, settings);
    if (out == nullptr)
        throw std::runtime_error ("not even silence can be played at this sample rate");
    return out;
}
}
