/* marvek: the editor's native library. Surfaces, blits, boxes, text, fonts,
 * colour helpers, the packed-file codec and the level undo store, behind a
 * plain C interface so that any layer (and any language) can call it.
 *
 * Conventions
 * - Surfaces and fonts are known by handles; 0 means "none". Every call
 *   accepts 0 and handles that were already destroyed, and then does nothing
 *   (getters return 0).
 * - A surface pixel is a 32-bit word: alpha in bits 24-31, red 16-23,
 *   green 8-15, blue 0-7 (bytes in memory: blue, green, red, alpha). The
 *   fourth byte is an inverse opacity: 0 opaque, 255 transparent (skipped by
 *   blits), anything between is blended.
 * - Palette colours ("Windows colours") are 0x00BBGGRR words; getRed, getGreen
 *   and getBlue read that form, createBGRA builds the surface form.
 * - Paths are zero-terminated UTF-8.
 * - Drawing clips to the destination: no call reads or writes outside a
 *   surface, whatever its arguments.
 * - Memory that the library hands out (impExplode, impImplode) is released
 *   with freeMemory.
 */
#ifndef MARVEK_NATIVE_MARVEK_H
#define MARVEK_NATIVE_MARVEK_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- surfaces ---------------------------------------------------------- */

int32_t surfaceCreate(int32_t width, int32_t height);
/* Loads an 8-bit (uncompressed or RLE8), 24- or 32-bit BMP as an opaque
 * surface; 0 on failure. */
int32_t surfaceLoadFromBitmap(const char* path);
int32_t surfaceGetWidth(int32_t surface);
int32_t surfaceGetHeight(int32_t surface);
uint32_t surfaceGetPixel(int32_t surface, int32_t x, int32_t y);
void surfaceSetPixel(int32_t surface, int32_t x, int32_t y, uint32_t colour);
/* Rows top to bottom, width * 4 bytes each, no padding. */
uint32_t* surfaceGetDataPtr(int32_t surface);
void surfaceFill(int32_t surface, uint32_t colour);
void surfaceClear(int32_t surface);
void surfaceDestroy(int32_t surface);
/* Copies the surface 1:1 into top-down pixel memory of the same size. */
void surfaceCopyToBitmap(int32_t surface, uint32_t* bits);
/* Copies the surface into top-down pixel memory of bitmapWidth x
 * bitmapHeight, each source pixel becoming a 2 x 2 block; output beyond
 * twice the surface's size is left alone. */
void surfaceCopyToBitmapDouble(int32_t surface, uint32_t* bits, int32_t bitmapWidth,
                               int32_t bitmapHeight);

/* ---- drawing ----------------------------------------------------------- */

int32_t renderInit(void);
/* Draws width x height pixels from the source's top-left corner at (x, y),
 * skipping transparent pixels and blending translucent ones. */
void renderBlit(int32_t destination, int32_t source, int32_t x, int32_t y, int32_t width,
                int32_t height);
/* Copies the whole source at (x, y), no transparency. */
void renderBlitFast(int32_t destination, int32_t source, int32_t x, int32_t y);
/* Fills a rectangle; a translucent colour is blended when alphaBlending is
 * non-zero and drawn as an alternating-pixel pattern otherwise. */
void renderBoxFill(int32_t destination, int32_t x, int32_t y, int32_t width, int32_t height,
                   uint32_t colour, int32_t alphaBlending);
void renderBox(int32_t destination, int32_t x, int32_t y, int32_t width, int32_t height,
               uint32_t colour);
/* Text is zero-terminated, one byte a character (Latin-1). */
void renderText(int32_t destination, int32_t font, int32_t x, int32_t y, uint32_t colour,
                const char* text);

/* ---- fonts ------------------------------------------------------------- */

int32_t fontLoadFromBitmap(const char* path);
/* A font whose glyphs are a copy of the surface's pixels, taken as opaque;
 * 0 unless the surface's sides are multiples of 16. */
int32_t fontLoadFromSurface(int32_t surface);
int32_t fontGetCharWidth(int32_t font);
int32_t fontGetCharHeight(int32_t font);
/* Owned by the font: never destroy it yourself. */
int32_t fontGetSurface(int32_t font);
void fontDestroy(int32_t font);

/* ---- colours and words -------------------------------------------------- */

uint8_t getRed(uint32_t windowsColour);
uint8_t getGreen(uint32_t windowsColour);
uint8_t getBlue(uint32_t windowsColour);
uint32_t createBGRA(uint8_t red, uint8_t green, uint8_t blue, uint8_t alpha);
uint32_t byteSwapInt(uint32_t value);

/* ---- packed files ("IMP!" / "ATN!") -------------------------------------- */

enum ImpStatus {
    IMP_OK = 0,
    IMP_ERROR_TOO_SHORT = 1,      /* shorter than its stream end + 50 */
    IMP_ERROR_MAGIC = 2,          /* neither "IMP!" nor "ATN!" */
    IMP_ERROR_STREAM_END = 3,     /* stream end odd or below 12 */
    IMP_ERROR_EMPTY = 4,          /* unpacked length 0 */
    IMP_ERROR_RUN_OVERFLOW = 5,   /* literal run longer than what is left */
    IMP_ERROR_MATCH_OVERFLOW = 6, /* match longer than what is left */
    IMP_ERROR_DISTANCE = 7,       /* match source beyond the end of the output */
    IMP_ERROR_LENGTH_BYTE = 8,    /* a match length byte of 0 */
    IMP_ERROR_TRUNCATED = 9,      /* stream ran out before the output was complete */
    IMP_ERROR_CHECKSUM = 10,      /* checksum does not match */
    IMP_ERROR_NO_MEMORY = 11,
    IMP_ERROR_ARGUMENT = 12, /* null pointer, empty input, mode out of range */
};

/* A short English description of a status, never NULL. */
const char* impStatusText(int32_t status);

/* Unpacks a whole packed file of packedLength bytes. On IMP_OK *unpacked
 * receives library memory of *unpackedLength bytes (free with freeMemory);
 * on failure both are set to NULL / 0. */
int32_t impExplode(const uint8_t* packed, size_t packedLength, uint8_t** unpacked,
                   size_t* unpackedLength);

/* Packs length bytes (at least 1) into a complete packed file with magic
 * "IMP!". mode 0..11 uses that classic mode's tables and window; mode
 * IMP_MODE_BEST searches for the smallest file. On IMP_OK *packed receives
 * library memory of *packedLength bytes (free with freeMemory). */
#define IMP_MODE_BEST (-1)
int32_t impImplode(const uint8_t* data, size_t length, int32_t mode, uint8_t** packed,
                   size_t* packedLength);

void freeMemory(void* memory);

/* ---- undo store ---------------------------------------------------------- */

void undoInit(void);
/* The store keeps at most this many snapshots; the oldest gives way. */
void undoSetMax(int32_t maximum);
/* Appends a copy of size bytes as the newest snapshot and empties the redo
 * side. */
void undoAdd(const void* cells, size_t size);
/* Restores the newest snapshot over cells (its stored size) and moves what
 * cells held onto the redo side; does nothing when there is nothing to undo. */
void undoDoUndo(void* cells);
/* The reverse of undoDoUndo. */
void undoDoRedo(void* cells);
int32_t undoCount(void);
int32_t redoCount(void);
void undoDestroy(void);

#ifdef __cplusplus
}
#endif

#endif
