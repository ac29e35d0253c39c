// What the writers for renderers have in common.
#pragma once

#include "tesmar/captions/renderers/TESMARRenderers.h"

namespace tesmar {

// With a point and at most `decimals` decimals, without needless zeros, in any locale.
std::string numberText(double number, int decimals = 3);

// The component as two hexadecimal digits, in capitals.
std::string hexByte(double component);
// "RRGGBB"
std::string hexColor(const TESMARCaptionStyle::Color& color);

// Finite, and from 1 to 100000.
double usableHeight(double height);
// Finite, and from 0.01 to 100; 1 for NaN.
double usableScale(double pixelsPerPoint);
// With the characters escaped that mean something in XML, and control characters as spaces.
std::string xmlText(std::string_view text);

// The name by which libass and mpv find the face: they know the faces of CFF files by their
// PostScript names, and others by their full names.
const std::string& nameForLibass(const FontDescription& face);
// The size at which they draw `points`: theirs is the height of the font for Windows.
double sizeForLibass(const TESMARCaptionStyle& style);
// The widths of edges in points.
double outlineWidth(const TESMARCaptionStyle& style);
double shadowDistance(const TESMARCaptionStyle& style);

// The box that an engine with one box for everything shows: the background, or the window without
// one.
const TESMARCaptionStyle::Color& onlyBox(const TESMARCaptionStyle& style);

// Appends a loss if this engine's lines are at another distance than the library's.
void addPitchLoss(TESMARRendererStyle& words, const TESMARCaptionStyle& style, double pitch);
// Appends a loss for a face that is not in any file.
void addFontLoss(TESMARRendererStyle& words, const TESMARCaptionStyle& style);

} // namespace tesmar
