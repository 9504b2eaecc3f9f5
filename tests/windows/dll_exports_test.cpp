// lettrix.dll as a Windows caller meets it: loaded by name, every function found under its plain name,
// and called through the pointers GetProcAddress gives.
#include <gtest/gtest.h>

#include <windows.h>

#include <sstream>
#include <string>

#include "lettrix/lettrix.h"

namespace {

const char kExportNames[] =
    "CreateRenderProcess DestroyRenderProcess Render SetColorFaceStart SetColorFaceEnd SetColorOutlineStart "
    "SetColorOutlineEnd SetShadowColor SetShadowOffset SetShadowZoom SetShadowVisible SetDrawShadowOnly "
    "SetShadowExtruded SetExtrudedShadowColor SetFaceBlurLevel SetOutlineBlurLevel SetShadowBlurLevel "
    "SetFaceFillType SetOutlineFillType SetGradientFace SetGradientOutline SetFaceGradientColors "
    "SetOutlineGradientColors SetFaceGradientFitMode SetOutlineGradientFitMode SetFaceUserGradientArea "
    "SetOutlineUserGradientArea SetTextureFace SetTextureOutline SetFaceTextureTiling "
    "SetOutlineTextureTiling "
    "SetFaceTextureEmbossed EnableFaceEmbossed EnableOutline3DBorder SetOutline3DBorder SetOutlineThickness "
    "SetTranslation ResetTranslation";

// The export `name`, typed like the header's declaration of the same function.
template <typename Fn>
Fn* Get(HMODULE dll, Fn*, const char* name) {
  return reinterpret_cast<Fn*>(reinterpret_cast<void*>(GetProcAddress(dll, name)));
}
#define LX_GET(fn) Get(dll, &fn, #fn)

TEST(LoadedDll, EveryFunctionIsExportedUnderItsPlainNameAndCallable) {
  HMODULE dll = LoadLibraryA("lettrix.dll");
  ASSERT_NE(dll, nullptr) << "error " << GetLastError();
  std::istringstream names(kExportNames);
  for (std::string name; names >> name;) {
    EXPECT_NE(GetProcAddress(dll, name.c_str()), nullptr) << name;
    // cdecl names carry no decoration in the export table.
    EXPECT_EQ(GetProcAddress(dll, ("_" + name).c_str()), nullptr) << name;
  }
  // Through the loaded pointers, arguments of several kinds and results arrive as the header says.
  RenderHandle slot = LX_GET(CreateRenderProcess)();
  ASSERT_NE(slot, 0u);
  int32_t l = 0, t = 0, r = 50, b = 20, two = 2;
  uint32_t colours[2] = {0xFF000000u, 0xFFFFFFFFu}, pixels[4] = {1, 2, 3, 4}, buffer[4] = {7, 7, 7, 7};
  uint8_t count = 2;
  EXPECT_TRUE(LX_GET(SetFaceGradientColors)(&slot, colours, nullptr, &count));
  EXPECT_TRUE(LX_GET(SetFaceUserGradientArea)(&slot, &l, &t, &r, &b));
  EXPECT_FALSE(LX_GET(SetOutlineUserGradientArea)(&slot, &l, &t, &l, &b));
  EXPECT_TRUE(LX_GET(SetTextureOutline)(&slot, pixels, &two, &two));
  EXPECT_FALSE(LX_GET(SetTextureOutline)(&slot, nullptr, &two, &two));
  const int32_t zero = 0;
  EXPECT_FALSE(LX_GET(Render)(&slot, colours, &zero, &two, buffer));
  EXPECT_EQ(buffer[0], 7u);
  LX_GET(DestroyRenderProcess)(&slot);
  EXPECT_EQ(slot, 0u);
  RenderHandle allOnes = ~RenderHandle{0};
  EXPECT_FALSE(LX_GET(SetTextureFace)(&allOnes, pixels, &two, &two));
  FreeLibrary(dll);
}

}  // namespace
