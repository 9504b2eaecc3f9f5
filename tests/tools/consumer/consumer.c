/* Draws a red square from a hand-made outline block and checks three pixels. Exit status 0 when the
 * installed library drew it. */
#include <stdio.h>
#include <string.h>

#include <lettrix/lettrix.h>

static void put32(unsigned char* p, uint32_t v) {
  p[0] = (unsigned char)v;
  p[1] = (unsigned char)(v >> 8);
  p[2] = (unsigned char)(v >> 16);
  p[3] = (unsigned char)(v >> 24);
}

/* A FIXED of a whole number: fraction 0 in the low half, the value in the high half. */
static void putPoint(unsigned char* p, int x, int y) {
  put32(p, (uint32_t)x << 16);
  put32(p + 4, (uint32_t)y << 16);
}

int main(void) {
  /* One contour: header (16 bytes) and one polyline record of three points (4 + 24 bytes). */
  enum { kBytes = 16 + 4 + 3 * 8, kSize = 40 };
  void* block = LettrixGlobalAlloc(0, kBytes);
  unsigned char* b = (unsigned char*)LettrixGlobalLock(block);
  uint32_t pixels[kSize * kSize];
  int32_t width = kSize, height = kSize;
  uint8_t alpha = 255, red = 255, zero = 0;
  RenderHandle slot;
  bool drawn;

  if (!b) {
    fprintf(stderr, "no block\n");
    return 1;
  }
  put32(b, kBytes);
  put32(b + 4, 24);
  putPoint(b + 8, 10, 10);
  b[16] = 1; /* TT_PRIM_LINE */
  b[17] = 0;
  b[18] = 3;
  b[19] = 0;
  putPoint(b + 20, 30, 10);
  putPoint(b + 28, 30, 30);
  putPoint(b + 36, 10, 30);

  memset(pixels, 0, sizeof pixels);
  slot = CreateRenderProcess();
  SetColorFaceStart(&slot, &alpha, &red, &zero, &zero);
  SetColorFaceEnd(&slot, &alpha, &red, &zero, &zero);
  drawn = Render(&slot, block, &width, &height, pixels);
  DestroyRenderProcess(&slot);
  LettrixGlobalUnlock(block);
  LettrixGlobalFree(block);

  if (!drawn || slot != 0) {
    fprintf(stderr, "Render returned %d, slot %lu\n", (int)drawn, (unsigned long)slot);
    return 1;
  }
  /* Opaque red inside (blue, green, red, alpha in memory), nothing outside. */
  if (pixels[20 * kSize + 20] != 0xFFFF0000u || pixels[2 * kSize + 2] != 0 || pixels[35 * kSize + 35] != 0) {
    fprintf(stderr, "pixels %08lx %08lx %08lx\n", (unsigned long)pixels[20 * kSize + 20],
            (unsigned long)pixels[2 * kSize + 2], (unsigned long)pixels[35 * kSize + 35]);
    return 1;
  }
  printf("consumer: drew the square\n");
  return 0;
}
