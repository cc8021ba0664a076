#pragma once

#include <memory>
#include <vector>

#include "player/Devices.h"
#include "player/Performer.h"

namespace player
{
struct AudioSettings
{
    DeviceWish device;            // any: the system's default
    std::uint32_t sampleRate = 0; // Hz, 0: the device's own
    std::uint32_t period = 0;     // frames that are asked for at a time, 0: as few as the device does well
};

// A sound device that plays in stereo. User-interface thread.
class AudioOut
{
public:
    static std::vector<Device> devices ();

    // Opens a device, which waits for `start`. Throws std::runtime_error, as one sentence, when there is none
    // or none that was asked for.
    static std::unique_ptr<AudioOut> open (const AudioSettings& settings);

    // One that nobody hears, and that takes its time as others do, so that songs play.
    static std::unique_ptr<AudioOut> openSilent (const AudioSettings& settings);

    AudioOut () = default;
    virtual ~AudioOut () = default; // nobody asks the source after that
    AudioOut (const AudioOut&) = delete;
    AudioOut& operator= (const AudioOut&) = delete;

    virtual const std::string& name () const = 0;
    virtual std::uint32_t sampleRate () const = 0; // Hz

    // Asks for sound from now on, on a thread of its own. The source must live as long as this. Throws
    // std::runtime_error when the device refuses.
    virtual void start (AudioSource& source) = 0;

    // False once the device has gone.
    virtual bool isRunning () const = 0;
};
}
