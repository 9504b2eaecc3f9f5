// lettrix.dll as a Windows caller meets it: loaded by name, every function found under its plain name,
// and called through the pointers GetProcAddress gives.
#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include "lettrix/lettrix.h"

namespace {

const char* const kExportNames[] = {
    "CreateRenderProcess",
    "DestroyRenderProcess",
    "Render",
    "SetColorFaceStart",
    "SetColorFaceEnd",
    "SetColorOutlineStart",
    "SetColorOutlineEnd",
    "SetShadowColor",
    "SetShadowOffset",
    "SetShadowZoom",
    "SetShadowVisible",
    "SetDrawShadowOnly",
    "SetShadowExtruded",
    "SetExtrudedShadowColor",
    "SetFaceBlurLevel",
    "SetOutlineBlurLevel",
    "SetShadowBlurLevel",
    "SetFaceFillType",
    "SetOutlineFillType",
    "SetGradientFace",
    "SetGradientOutline",
    "SetFaceGradientColors",
    "SetOutlineGradientColors",
    "SetFaceGradientFitMode",
    "SetOutlineGradientFitMode",
    "SetFaceUserGradientArea",
    "SetOutlineUserGradientArea",
    "SetTextureFace",
    "SetTextureOutline",
    "SetFaceTextureTiling",
    "SetOutlineTextureTiling",
    "SetFaceTextureEmbossed",
    "EnableFaceEmbossed",
    "EnableOutline3DBorder",
    "SetOutline3DBorder",
    "SetOutlineThickness",
    "SetTranslation",
    "ResetTranslation",
};

class LoadedDll : public ::testing::Test {
 protected:
  void SetUp() override {
    dll_ = LoadLibraryA("lettrix.dll");
    ASSERT_NE(dll_, nullptr) << "error " << GetLastError();
  }
  void TearDown() override {
    if (dll_ != nullptr) FreeLibrary(dll_);
  }

  // The export `name`, typed like the header's declaration of the same function.
  template <typename Fn>
  Fn* get(Fn*, const char* name) {
    return reinterpret_cast<Fn*>(reinterpret_cast<void*>(GetProcAddress(dll_, name)));
  }

  HMODULE dll_ = nullptr;
};

#define LX_GET(fn) get(&fn, #fn)

TEST_F(LoadedDll, EveryInterfaceFunctionIsExportedUnderItsPlainName) {
  for (const char* name : kExportNames) {
    EXPECT_NE(GetProcAddress(dll_, name), nullptr) << name;
    // cdecl names carry no decoration in the export table.
    EXPECT_EQ(GetProcAddress(dll_, ("_" + std::string(name)).c_str()), nullptr) << name;
  }
}

TEST_F(LoadedDll, ProcessCanBeDrivenThroughTheLoadedPointers) {
  auto create = LX_GET(CreateRenderProcess);
  auto destroy = LX_GET(DestroyRenderProcess);
  ASSERT_NE(create, nullptr);
  ASSERT_NE(destroy, nullptr);
  RenderHandle slot = create();
  ASSERT_NE(slot, 0u);

  uint8_t a = 255, c0 = 1, c1 = 2, c2 = 3, on = 1, level = 2, w = 10, d = 2, mode = 1;
  int32_t x = 2, y = 3, type = 2, thickness = 1, l = 0, t = 0, r = 50, b = 20, two = 2;
  double p1 = 0.1, p2 = 0.9, zoom = 1.5, angle = 0.5;
  uint32_t colours[2] = {0xFF000000u, 0xFFFFFFFFu};
  uint8_t count = 2;
  uint32_t pixels[4] = {1, 2, 3, 4};

  LX_GET(SetColorFaceStart)(&slot, &a, &c0, &c1, &c2);
  LX_GET(SetColorFaceEnd)(&slot, &a, &c0, &c1, &c2);
  LX_GET(SetColorOutlineStart)(&slot, &a, &c0, &c1, &c2);
  LX_GET(SetColorOutlineEnd)(&slot, &a, &c0, &c1, &c2);
  LX_GET(SetShadowColor)(&slot, &a, &c0, &c1, &c2);
  LX_GET(SetShadowOffset)(&slot, &x, &y);
  LX_GET(SetShadowZoom)(&slot, &zoom, &zoom);
  LX_GET(SetShadowVisible)(&slot, &on);
  LX_GET(SetDrawShadowOnly)(&slot, &on);
  LX_GET(SetShadowExtruded)(&slot, &on);
  LX_GET(SetExtrudedShadowColor)(&slot, &on);
  LX_GET(SetFaceBlurLevel)(&slot, &level);
  LX_GET(SetOutlineBlurLevel)(&slot, &level);
  LX_GET(SetShadowBlurLevel)(&slot, &level);
  LX_GET(SetFaceFillType)(&slot, &type);
  LX_GET(SetOutlineFillType)(&slot, &type);
  LX_GET(SetGradientFace)(&slot, &type, &p1, &p2);
  LX_GET(SetGradientOutline)(&slot, &type, &p1, &p2);
  EXPECT_TRUE(LX_GET(SetFaceGradientColors)(&slot, colours, nullptr, &count));
  EXPECT_TRUE(LX_GET(SetOutlineGradientColors)(&slot, colours, nullptr, &count));
  LX_GET(SetFaceGradientFitMode)(&slot, &mode);
  LX_GET(SetOutlineGradientFitMode)(&slot, &mode);
  EXPECT_TRUE(LX_GET(SetFaceUserGradientArea)(&slot, &l, &t, &r, &b));
  EXPECT_FALSE(LX_GET(SetOutlineUserGradientArea)(&slot, &l, &t, &l, &b));
  EXPECT_TRUE(LX_GET(SetTextureFace)(&slot, pixels, &two, &two));
  EXPECT_TRUE(LX_GET(SetTextureOutline)(&slot, pixels, &two, &two));
  EXPECT_FALSE(LX_GET(SetTextureOutline)(&slot, nullptr, &two, &two));
  LX_GET(SetFaceTextureTiling)(&slot, &type);
  LX_GET(SetOutlineTextureTiling)(&slot, &type);
  LX_GET(SetFaceTextureEmbossed)(&slot, &angle, &c0, &c1, &c2);
  LX_GET(EnableFaceEmbossed)(&slot, &on);
  LX_GET(EnableOutline3DBorder)(&slot, &on);
  LX_GET(SetOutline3DBorder)(&slot, &w, &d, &angle);
  LX_GET(SetOutlineThickness)(&slot, &thickness);
  LX_GET(SetTranslation)(&slot, &x, &y);
  LX_GET(ResetTranslation)(&slot);

  uint32_t buffer[4] = {7, 7, 7, 7};
  const int32_t zero = 0;
  EXPECT_FALSE(LX_GET(Render)(&slot, colours, &zero, &two, buffer));
  EXPECT_EQ(buffer[0], 7u);

  destroy(&slot);
  EXPECT_EQ(slot, 0u);
  RenderHandle allOnes = ~RenderHandle{0};
  EXPECT_FALSE(LX_GET(SetTextureFace)(&allOnes, pixels, &two, &two));
  destroy(&allOnes);
  EXPECT_EQ(allOnes, 0u);
}

}  // namespace
