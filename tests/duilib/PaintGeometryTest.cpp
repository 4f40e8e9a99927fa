// The arithmetic of painting, apart from any drawing API: gradient bands, the rounded shape's
// coverage and clip, premultiplied colours, DrawText flags for a label's style, and where the
// pieces of an image go.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "duilib/Render/Gradient.h"
#include "duilib/Render/ImagePlace.h"
#include "duilib/Render/RoundRect.h"
#include "duilib/Render/TextFormat.h"

#ifdef _WIN32
#include <windows.h>
// The painter hands these straight to GDI.
static_assert(mivo::duilib::DUI_DT_WORDBREAK == DT_WORDBREAK && mivo::duilib::DUI_DT_NOPREFIX == DT_NOPREFIX &&
              mivo::duilib::DUI_DT_EDITCONTROL == DT_EDITCONTROL &&
              mivo::duilib::kFontQualityNonAntialiased == NONANTIALIASED_QUALITY &&
              mivo::duilib::kFontQualityAntialiased == ANTIALIASED_QUALITY &&
              mivo::duilib::kFontQualityClearType == CLEARTYPE_QUALITY);
#endif

namespace {

using namespace mivo::duilib;

TEST(Gradient, BandsShareTheLengthAndRunFromTheFirstColourToTheLast) {
  struct Row {
    const char* what;
    UiRect rc;
    uint32_t begin, end;
    bool vertical;
    int steps;
    std::vector<ColorBand> expected;
  };
  const Row rows[] = {
      {"four steps down",
       {0, 0, 10, 4},
       0xFF000000,
       0xFF0000FF,
       true,
       4,
       {{{0, 0, 10, 1}, 0xFF000000},
        {{0, 1, 10, 2}, 0xFF000055},
        {{0, 2, 10, 3}, 0xFF0000AA},
        {{0, 3, 10, 4}, 0xFF0000FF}}},
      {"three steps across ten pixels",
       {5, 0, 15, 2},
       0xFFFF0000,
       0xFF00FF00,
       false,
       3,
       {{{5, 0, 8, 2}, 0xFFFF0000}, {{8, 0, 11, 2}, 0xFF808000}, {{11, 0, 15, 2}, 0xFF00FF00}}},
      {"no steps: one band a line",
       {0, 0, 4, 3},
       0xFF000000,
       0xFF000000,
       true,
       0,
       {{{0, 0, 4, 1}, 0xFF000000}, {{0, 1, 4, 2}, 0xFF000000}, {{0, 2, 4, 3}, 0xFF000000}}},
      {"more steps than pixels",
       {0, 0, 2, 9},
       0x00FF0000,
       0xFFFF0000,
       false,
       50,
       {{{0, 0, 1, 9}, 0x00FF0000}, {{1, 0, 2, 9}, 0xFFFF0000}}},
      {"one step is the first colour", {0, 0, 3, 3}, 0xFF112233, 0xFFFFFFFF, true, 1, {{{0, 0, 3, 3}, 0xFF112233}}},
      {"empty", {0, 0, 0, 5}, 0xFF000000, 0xFFFFFFFF, true, 2, {}},
  };
  for (const Row& row : rows)
    EXPECT_EQ(GradientBands(row.rc, row.begin, row.end, row.vertical, row.steps), row.expected) << row.what;
}

TEST(RoundRect, CoverageCutsTheCornersAndStaysSymmetric) {
  struct Row {
    const char* what;
    int width, height;
    UiSize round;
    int border;
    int x, y;
    int low, high;  // the coverage lies within
  };
  const Row rows[] = {
      {"square: the corner pixel is whole", 10, 10, {0, 0}, 0, 0, 0, 255, 255},
      {"rounded: the corner pixel is outside", 20, 20, {10, 10}, 0, 0, 0, 0, 0},
      {"rounded: the arc's pixel is partly in", 20, 20, {10, 10}, 0, 1, 1, 1, 254},
      {"rounded: the middle of an edge is whole", 20, 20, {10, 10}, 0, 0, 10, 255, 255},
      {"rounded: the middle", 20, 20, {10, 10}, 0, 10, 10, 255, 255},
      {"ellipse wider than tall: cut further along the top", 40, 20, {20, 8}, 0, 2, 0, 0, 0},
      {"ellipse wider than tall: less down the side", 40, 20, {20, 8}, 0, 0, 3, 1, 254},
      {"outline: its two pixels", 20, 20, {0, 0}, 2, 1, 5, 255, 255},
      {"outline: the inside", 20, 20, {0, 0}, 2, 2, 5, 0, 0},
      {"rounded outline: the middle is empty", 20, 20, {10, 10}, 1, 10, 10, 0, 0},
      {"rounded outline: its top edge", 20, 20, {10, 10}, 1, 10, 0, 255, 255},
      {"rounded outline: outside the corner", 20, 20, {10, 10}, 1, 0, 0, 0, 0},
      {"rounding larger than the rectangle", 6, 6, {100, 100}, 0, 0, 0, 0, 0},
  };
  for (const Row& row : rows) {
    const std::vector<uint8_t> coverage = RoundRectCoverage(row.width, row.height, row.round, row.border);
    ASSERT_EQ(coverage.size(), static_cast<size_t>(row.width * row.height)) << row.what;
    const int value = coverage[static_cast<size_t>(row.y * row.width + row.x)];
    EXPECT_GE(value, row.low) << row.what;
    EXPECT_LE(value, row.high) << row.what;
    for (int y = 0; y < row.height; ++y)
      for (int x = 0; x < row.width; ++x) {
        const auto at = [&](int px, int py) { return coverage[static_cast<size_t>(py * row.width + px)]; };
        ASSERT_EQ(at(x, y), at(row.width - 1 - x, y)) << row.what << " mirrored across at " << x << "," << y;
        ASSERT_EQ(at(x, y), at(x, row.height - 1 - y)) << row.what << " mirrored down at " << x << "," << y;
      }
  }
}

TEST(RoundRect, ClipSpansKeepThePixelsWhoseCentresAreInside) {
  using Span = std::pair<int, int>;
  EXPECT_EQ(RoundRectSpans(4, 2, UiSize{}), (std::vector<Span>{{0, 4}, {0, 4}}));
  const std::vector<Span> spans = RoundRectSpans(20, 20, UiSize{10, 10});
  ASSERT_EQ(spans.size(), 20u);
  // radius 5: row 0's centre line (y 0.5) meets the arc 5 - sqrt(25 - 4.5²) = 2.82 in
  EXPECT_EQ(spans[0], (Span{3, 17}));
  EXPECT_EQ(spans[19], (Span{3, 17}));
  EXPECT_EQ(spans[5], (Span{0, 20}));
  EXPECT_EQ(spans[10], (Span{0, 20}));
  EXPECT_EQ(RoundRectSpans(0, 5, UiSize{2, 2}), std::vector<Span>{});
}

TEST(RoundRect, PixelsArePremultipliedByCoverageAndAlpha) {
  struct Row {
    uint8_t coverage;
    uint32_t argb, pixel;
  };
  const Row rows[] = {
      {255, 0xFF102030, 0xFF102030}, {0, 0xFF102030, 0x00000000},   {128, 0xFFFF0000, 0x80800000},
      {255, 0x80FF0000, 0x80800000}, {128, 0x80FFFFFF, 0x40404040},
  };
  for (const Row& row : rows)
    EXPECT_EQ(CoverageToPixels({row.coverage}, row.argb), std::vector<uint32_t>{row.pixel})
        << std::hex << row.argb << " at " << std::dec << int(row.coverage);
}

TEST(TextFormat, LabelStylesBecomeDrawTextFlags) {
  struct Row {
    const char* what;
    uint32_t style;
    bool lineLimit;
    uint32_t format;
  };
  const Row rows[] = {
      {"a fresh label: one line, centred vertically", DUI_DT_VCENTER | DUI_DT_SINGLELINE, false, 0x824},
      {"centred with an ellipsis", DUI_DT_CENTER | DUI_DT_VCENTER | DUI_DT_SINGLELINE | DUI_DT_END_ELLIPSIS, false,
       0x8825},
      {"not one line: wraps at words", 0, false, 0x810},
      {"wrapped with linelimit: whole lines only", DUI_DT_RIGHT, true, 0x2812},
      {"linelimit on one line changes nothing", DUI_DT_SINGLELINE, true, 0x820},
      {"bits that are no style are dropped", 0x10000 | DUI_DT_SINGLELINE, false, 0x820},
  };
  for (const Row& row : rows) EXPECT_EQ(TextFormatFor(row.style, row.lineLimit), row.format) << row.what;
}

TEST(TextFormat, WrappedBlocksAreAlignedVerticallyHere) {
  const UiRect rc{0, 10, 100, 60};
  struct Row {
    const char* what;
    int height;
    uint32_t format;
    int top;
  };
  const Row rows[] = {
      {"top", 20, DUI_DT_WORDBREAK, 10},
      {"centred", 20, DUI_DT_WORDBREAK | DUI_DT_VCENTER, 25},
      {"bottom", 20, DUI_DT_WORDBREAK | DUI_DT_BOTTOM, 40},
      {"one line: DrawText does it", 20, DUI_DT_SINGLELINE | DUI_DT_VCENTER, 10},
      {"taller than the place starts at its top", 80, DUI_DT_WORDBREAK | DUI_DT_BOTTOM, 10},
  };
  for (const Row& row : rows) {
    const UiRect placed = PlaceTextBlock(rc, row.height, row.format);
    EXPECT_EQ(placed, (UiRect{0, row.top, 100, 60})) << row.what;
  }
  const int qualities[] = {5, 3, 3, 4, 4, 5, 5};  // hints 0 to 5, then one out of range
  for (int hint = 0; hint < 7; ++hint) EXPECT_EQ(FontQualityForHint(hint), qualities[hint]) << hint;
}

TEST(ImagePlace, LayoutTilingAndTheEmptyCentrePlaceThePieces) {
  const UiRect whole{0, 0, 8, 8};
  struct Row {
    const char* what;
    int layout;
    bool xTiled, yTiled;
    UiRect source, dest;
    std::vector<ImagePiece> expected;
  };
  const Row rows[] = {
      {"stretched", 0, false, false, whole, {0, 0, 20, 10}, {{whole, {0, 0, 20, 10}}}},
      {"at its own size, cut", 1, false, false, whole, {10, 10, 14, 30}, {{{0, 0, 4, 8}, {10, 10, 14, 18}}}},
      {"cut ignores tiling", 1, true, true, whole, {0, 0, 20, 20}, {{whole, {0, 0, 8, 8}}}},
      {"scaled, wider than tall", 2, false, false, {0, 0, 8, 4}, {0, 0, 20, 20}, {{{0, 0, 8, 4}, {0, 5, 20, 15}}}},
      {"scaled, taller than wide", 2, false, false, {0, 0, 4, 8}, {0, 0, 20, 20}, {{{0, 0, 4, 8}, {5, 0, 15, 20}}}},
      {"tiled across, stretched down",
       0,
       true,
       false,
       whole,
       {0, 0, 20, 10},
       {{whole, {0, 0, 8, 10}}, {whole, {8, 0, 16, 10}}, {{0, 0, 4, 8}, {16, 0, 20, 10}}}},
      {"tiled both ways",
       0,
       true,
       true,
       whole,
       {0, 0, 10, 10},
       {{whole, {0, 0, 8, 8}},
        {{0, 0, 2, 8}, {8, 0, 10, 8}},
        {{0, 0, 8, 2}, {0, 8, 8, 10}},
        {{0, 0, 2, 2}, {8, 8, 10, 10}}}},
      {"too many tiles: stretched", 0, true, true, {0, 0, 1, 1}, {0, 0, 100, 100}, {{{0, 0, 1, 1}, {0, 0, 100, 100}}}},
      {"empty place", 0, false, false, whole, {5, 5, 5, 9}, {}},
  };
  for (const Row& row : rows) {
    ImageDescription image;
    image.layout = row.layout;
    image.xTiled = row.xTiled;
    image.yTiled = row.yTiled;
    EXPECT_EQ(PlaceImage(image, row.source, row.dest), row.expected) << row.what;
  }

  // Corner-stretched with the centre left out: eight pieces, the middle one gone, its corners
  // at their own size.
  ImageDescription framed;
  framed.corner = UiRect{2, 2, 2, 2};
  framed.emptyCenter = true;
  const std::vector<ImagePiece> pieces = PlaceImage(framed, whole, UiRect{0, 0, 20, 20});
  EXPECT_EQ(pieces.size(), 8u);
  EXPECT_EQ(std::count_if(pieces.begin(), pieces.end(),
                          [](const ImagePiece& p) {
                            return p.dest == UiRect{2, 2, 18, 18};
                          }),
            0);
  EXPECT_EQ(pieces.front(), (ImagePiece{{0, 0, 2, 2}, {0, 0, 2, 2}}));
  framed.corner = UiRect{};  // without corners there is no centre to leave out
  EXPECT_EQ(PlaceImage(framed, whole, UiRect{0, 0, 20, 20}).size(), 1u);
}

}  // namespace
