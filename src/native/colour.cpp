#include "native/marvek.h"

extern "C" {

uint8_t getRed(uint32_t windowsColour) {
    return static_cast<uint8_t>(windowsColour & 0xFF);
}

uint8_t getGreen(uint32_t windowsColour) {
    return static_cast<uint8_t>((windowsColour >> 8) & 0xFF);
}

uint8_t getBlue(uint32_t windowsColour) {
    return static_cast<uint8_t>((windowsColour >> 16) & 0xFF);
}

uint32_t createBGRA(uint8_t red, uint8_t green, uint8_t blue, uint8_t alpha) {
    return static_cast<uint32_t>(alpha) << 24 | static_cast<uint32_t>(red) << 16 |
           static_cast<uint32_t>(green) << 8 | blue;
}

uint32_t byteSwapInt(uint32_t value) {
    return (value >> 24) | ((value >> 8) & 0x0000FF00u) | ((value << 8) & 0x00FF0000u) |
           (value << 24);
}

} // extern "C"
