// What the toolkit's Windows sources use and the mingw-w64 headers lack. Included before everything in
// that library's files and in no others.
#pragma once

#include <d2d1_1.h>
#include <d3d11.h>
#include <dcomp.h>
#include <dwrite_3.h>

// The font set's call with four arguments bears another name there.
#define GetMatchingFonts GetMatchingFonts_

#undef INTERFACE
#define INTERFACE IDCompositionVisual3
DECLARE_INTERFACE_IID_ (IDCompositionVisual3, IDCompositionVisual2, "2775f462-b6c1-4015-b0be-b3e7d6a4976d")
{
    STDMETHOD (EnableHeatMap) (THIS_ const D2D1_COLOR_F& colour) PURE;
    STDMETHOD (DisableHeatMap) (THIS) PURE;
    STDMETHOD (EnableRedrawRegions) (THIS) PURE;
    STDMETHOD (DisableRedrawRegions) (THIS) PURE;
    STDMETHOD (SetDepthMode) (THIS_ DCOMPOSITION_DEPTH_MODE mode) PURE;
    STDMETHOD (SetOffsetZ) (THIS_ IDCompositionAnimation * animation) PURE;
    STDMETHOD (SetOffsetZ) (THIS_ float offset) PURE;
    STDMETHOD (SetOpacity) (THIS_ IDCompositionAnimation * animation) PURE;
    STDMETHOD (SetOpacity) (THIS_ float opacity) PURE;
};
__CRT_UUID_DECL (IDCompositionVisual3, 0x2775f462, 0xb6c1, 0x4015, 0xb0, 0xbe, 0xb3, 0xe7, 0xd6, 0xa4, 0x97,
                 0x6d)
#undef INTERFACE
