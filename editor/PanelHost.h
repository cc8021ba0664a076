#pragma once

#include <cstdint>

namespace editor
{
// What the panel asks of the plug-in format around it. User-interface thread only. `index` is always a
// parameter, 0..37: the panel's own commands stay between it and the instrument.
class PanelHost
{
public:
    virtual ~PanelHost () = default;

    // Sets the parameter of the instrument, 0..1, and lets the host record it.
    virtual void setParameterAutomated (std::int32_t index, float value) = 0;

    // The user takes hold of a control and lets go of it.
    virtual void beginEdit (std::int32_t index) = 0;
    virtual void endEdit (std::int32_t index) = 0;

    // Asks for a window of this size in pixels, whatever the host claims to be able to; false when it
    // refuses, for then a larger panel would be cut off.
    virtual bool resize (int width, int height) = 0;

    // Program or names changed: the host shall show them anew.
    virtual void updateDisplay () = 0;
};
}
