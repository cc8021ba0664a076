#include "tools/makePanelArt.h"

namespace panelart
{
using namespace panel;

Image drawAbout ()
{
    Canvas canvas (612, 244, caseColour);
    return canvas.image ();
}
}
