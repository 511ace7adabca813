/* SPDX-License-Identifier: MIT */
/* Drawing into a port: fonts, plain text, rich text with icons, lines, rectangles, the palette of
   16 colours, and pictures by name.

   Ports come from desktop.h. Coordinates are pixels from the port's top-left corner, x to the
   right, y down; what lies outside the port is not seen. A port keeps its font, its two colours and
   its text mode from call to call; the font's name and char_dy are common to all ports.

   Conventions. Texts are CP1252; a text with a length need not be terminated. A port that is null,
   released or gone with its window: the function does nothing and gives its failing result, and so
   it is with a null text of a length above 0 and with a negative length. Null outputs are skipped.
   A colour is a palette index (KorvelBlack to KorvelWhite). No function here changes which port is
   current.

   On the interface thread only. */
#ifndef KORVEL_DRAW_H
#define KORVEL_DRAW_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* --- Palette and text styles ----------------------------------------------------------------- */

/* Palette indexes. */
enum {
  KorvelBlack = 0,
  KorvelMaroon = 1,
  KorvelGreen = 2,
  KorvelOlive = 3,
  KorvelNavy = 4,
  KorvelPurple = 5,
  KorvelTeal = 6,
  KorvelGrey = 7,
  KorvelSilver = 8,
  KorvelRed = 9,
  KorvelLime = 10,
  KorvelYellow = 11,
  KorvelBlue = 12,
  KorvelFuchsia = 13,
  KorvelAqua = 14,
  KorvelWhite = 15,
  KorvelColours = 16,     /* how many there are */
  KorvelTransparent = 255 /* as a background: none */
};

/* Styles of text, to be added up. */
enum {
  KorvelPlain = 0,
  KorvelBold = 1,
  KorvelUnderlined = 2,
  KorvelItalic = 4,
  KorvelCondensed = 8,
  KorvelExtended = 16
};

/* --- Fonts ----------------------------------------------------------------------------------- */

/* Name of the chosen font, NUL-terminated CP1252, initially "": then ch_font_printstr uses Arial.
   Written by ch_font_set and ch_font_set_ext, and by the application at any time. */
KORVEL_API extern char ch_font_FontName[80];

/* Pixels from a drawing position down to the baseline of text drawn there: the ascent of the font
   last set, plus 1. Initially 0. Written by ch_font_set, ch_font_set_ext and ch_font_printstr, and
   by the application at any time; read at each draw. */
KORVEL_API extern int char_dy;

/* Chooses the font, colours and text mode of a port.
   name: copied into ch_font_FontName (names of 80 bytes or more are cut to 79). An empty name does
   nothing else, and needs no port. A name whose family is installed, or has an installed
   substitute of the same measures, selects it; any other leaves the port's font and size as they
   were.
   fore, back: palette indexes; with KorvelTransparent as back, text is drawn transparently and the
   background colour stays, else opaquely. size: points, 1 point being 1 pixel; a size below 1
   counts as 12, one above 1000 as 1000. style: a sum of the styles above. Sets the colours
   and char_dy whether the font is known or not. Returns 0 always. */
KORVEL_API int ch_font_set_ext(CGrafPtr port, const char *name, int fore, int back, int size,
                               int style);

/* ch_font_set_ext with style 0. Returns 0 always. */
KORVEL_API int ch_font_set(CGrafPtr port, const char *name, int fore, int back, int size);

/* Measures of the font of the current port (SetPort), in pixels: height is ascent + descent, widMax
   the advance of the widest character, leading the gap between lines.
   port is not used. With no current port the outputs stay as they were.
   Returns 0 always. */
KORVEL_API int ch_font_metrics(CGrafPtr port, int *height, int *widMax, int *leading);

/* --- Plain text ------------------------------------------------------------------------------ */

/* Draws text of len bytes, 0 to 255, up to its first NUL if it has one, with the baseline starting
   at (x, y + char_dy).
   Returns the width in pixels. Returns 0 and draws nothing when len is above 255. */
KORVEL_API int TextOut_0(CGrafPtr port, int x, int y, const char *text, int len);

/* Measures text of len bytes, 0 to 255, up to its first NUL if it has one: cx becomes the width in
   pixels that TextOut_0 returns for it; cy becomes 0.
   Returns cx. Returns 0 and leaves the outputs alone when len is above 255. */
KORVEL_API int GetTextExtent_0(CGrafPtr port, const char *text, int len, int *cx, int *cy);

/* --- Rich text -------------------------------------------------------------------------------

   One line of text. The byte 255 starts an escape: a code byte, then its arguments. All other bytes
   are characters; a run of them beyond 255 is not drawn and has no width.

   Units: cw is the width of "X", but at least 8; lh is ascent + descent + leading. An argument h or
   v of one byte a is a - 32; of two bytes a, b it is (a - 32) + 224 * (b - 32). Across, pixels are
   cw * h / 2, down lh * v / 4, truncated toward zero. So a tab to 5 * cw is the bytes 255 128 42.

   Tab positions, tab steps and the pen are kept as shorts (truncated). An escape cut off by the end
   of the text has no effect, except that a pen escape sets the pen across when only its v is cut
   off. The pen and the effect of KorvelRightAlignEscape outlast the call.
   What is drawn after a bullet, a line or a frame is black. */

/* The byte that starts an escape, and the codes that may follow it. The wide ones take each
   argument in two bytes. Any other code has no arguments and no effect. */
enum {
  KorvelEscape = 255,

  /* h: x becomes the position given, unless it is there or past it. */
  KorvelTabEscape = 128,
  KorvelWideTabEscape = 133,

  /* h: x becomes the smallest multiple of the step given that is greater than x; no effect when the
     step is not above 0. */
  KorvelTabEveryEscape = 129,
  KorvelWideTabEveryEscape = 134,

  /* The next run ends at x, and does not move x on; and taking that back. */
  KorvelRightAlignEscape = 131,
  KorvelLeftAlignEscape = 130,

  /* A framed red square of side cw at (x + cw/2, y + cw/2); it is 2 * cw wide. */
  KorvelBulletEscape = 138,

  /* h v: sets the pen. The last two do the same. */
  KorvelPenEscape = 200,
  KorvelWidePenEscape = 201,
  KorvelOtherPenEscape = 211,
  KorvelOtherWidePenEscape = 212,

  /* h v: draws a black line, 2 pixels wide, from the pen to the point, which becomes the pen. */
  KorvelLineEscape = 202,
  KorvelWideLineEscape = 203,

  /* h v: draws a black frame, 2 pixels wide, with the pen and the point as corners. */
  KorvelFrameEscape = 213,
  KorvelWideFrameEscape = 214
};

/* Codes of pictures, closed and open folders and a dot, with the pictures' names. Their top left
   corner is at (x, y + 1), and they are 2 * cw wide. */
enum {
  KorvelBlueFolderEscape = 148,       /* repferb */
  KorvelBlueOpenFolderEscape = 149,   /* repouvb */
  KorvelRedFolderEscape = 150,        /* repferr */
  KorvelRedOpenFolderEscape = 151,    /* repouvr */
  KorvelGreenFolderEscape = 152,      /* repferv */
  KorvelGreenOpenFolderEscape = 153,  /* repouvv */
  KorvelYellowFolderEscape = 154,     /* repferj */
  KorvelYellowOpenFolderEscape = 155, /* repouvj */
  KorvelOrangeFolderEscape = 156,     /* repfero */
  KorvelOrangeOpenFolderEscape = 157, /* repouvo */
  KorvelWhiteBlueFolderEscape = 158,  /* repfebb */
  KorvelWhiteRedFolderEscape = 159,   /* repfebr */
  KorvelLilacFolderEscape = 160,      /* repferl */
  KorvelLilacOpenFolderEscape = 161,  /* repouvl */
  KorvelDotEscape = 168               /* puceb */
};

/* Draws rich text of len bytes. Runs, bullets and pictures are placed at (x0 + current x, y0 + y),
   the current x starting at x; lines and frames at (x0 + pen, y0 + pen).
   Returns the distance in pixels by which x has moved. */
KORVEL_API int TextOut_Ext(CGrafPtr port, int x, int y, int x0, int y0, const char *text, int len);

/* Measures rich text of len bytes that would be drawn from x on: cx becomes the distance by which x
   would move, cy the height of bullets and pictures (2 * cw) or 0. y is not used.
   Where it differs from drawing: the escapes of the pen, of lines and of frames take no arguments,
   so the bytes after their codes count as text; after KorvelRightAlignEscape no run counts until
   KorvelLeftAlignEscape, in later calls too.
   Returns 1 when the text holds no tab, else 0. Returns 0 and leaves the outputs alone for a text
   that cannot be measured. */
KORVEL_API int GetTextExtent_Ext(CGrafPtr port, int x, int y, const char *text, int len, int *cx,
                                 int *cy);

/* Draws rich text in the chosen font at another size, in the middle of a box.
   The font is the port's own, Arial (where known) when ch_font_FontName is empty. x, y: top left of
   the box; width: its width in pixels. A text that holds a tab, or is as wide as the box or wider,
   starts at x. fore, back, size: as for ch_font_set_ext; sets char_dy. Lines and frames are placed
   from the port's corner. Leaves the foreground black.
   Returns the x just past the text; 0 for a null text, a null port or one that is gone. */
KORVEL_API int ch_font_printstr(CGrafPtr port, int x, int y, int width, int fore, int back,
                                int size, const char *text);

/* --- Colours, lines, rectangles -------------------------------------------------------------- */

/* Copies the colour of the palette entry index mod 16 into out (index -1 is entry 15). Null does
   nothing.
   Returns out. */
KORVEL_API RGBColor *vga_col(RGBColor *out, int index);

/* Draws a line with a pen of width x width pixels that hangs to the right of and below each point
   from (x1, y1) to (x2, y2), both included, in a palette colour. A width below 1 shows nothing.
   Leaves the foreground black. */
KORVEL_API void Line_Ex(CGrafPtr port, int x1, int y1, int x2, int y2, int colour, int width);

/* Line_Ex in any colour. */
KORVEL_API void LineC_Ex(CGrafPtr port, int x1, int y1, int x2, int y2, RGBColor rgb, int width);

/* Fills a rectangle in a palette colour and frames it, inside, by one black pixel. x, y: its top
   left corner; cx, cy: its size; sides are kept as shorts (truncated). Shows nothing when cx or cy
   is not above 0. Leaves the foreground black. */
KORVEL_API void Rectangle_Ex(CGrafPtr port, int x, int y, int cx, int cy, int colour);

/* --- Pictures --------------------------------------------------------------------------------

   A picture is the file pictures/<name>.svg, else .png, of the application's resources, else of
   the default set (szResources in desktop.h), of at most 2^28 pixels. Names are CP1252, file
   names UTF-8; one with a '/' names no picture. An SVG shows nothing of other files that it refers
   to. A picture is read at its first use, and again at the first use after its file was replaced;
   one that cannot be read counts as missing, and is tried again a second later. */

/* Draws a picture at its own size with its top left corner at (x, y).
   Returns 0; 1 when there is no such picture or nothing to draw it on. Returns 0 too for a name
   of more than 255 characters, which draws nothing. */
KORVEL_API int BMP_affic_desfond0(const char *name, CGrafPtr port, int x, int y);

/* Measures a picture: cx and cy become its size in pixels.
   Returns 0; 1 when there is no such picture. Returns 0 too for a name of more than 255 characters.
   In both these cases the outputs stay as they were. */
KORVEL_API int BMP_affic_dimfond0(const char *name, int *cx, int *cy);

#ifdef __cplusplus
}
#endif

#endif
