#include "keys/keyboard_shape.h"

#include <algorithm>
#include <array>
#include <linux/input-event-codes.h>

namespace tamsel {

namespace {

constexpr std::array lettersAndDigits{
    KEY_Q, KEY_W, KEY_E, KEY_R, KEY_T, KEY_Y, KEY_U, KEY_I, KEY_O, KEY_P, KEY_A, KEY_S,
    KEY_D, KEY_F, KEY_G, KEY_H, KEY_J, KEY_K, KEY_L, KEY_Z, KEY_X, KEY_C, KEY_V, KEY_B,
    KEY_N, KEY_M, KEY_1, KEY_2, KEY_3, KEY_4, KEY_5, KEY_6, KEY_7, KEY_8, KEY_9, KEY_0};
constexpr std::ptrdiff_t enoughOfThem = 20;
constexpr std::array keypad{KEY_KP0, KEY_KP1, KEY_KP2, KEY_KP3, KEY_KP4,    KEY_KP5,
                            KEY_KP6, KEY_KP7, KEY_KP8, KEY_KP9, KEY_KPENTER};

} // namespace

bool isKeyboard(const std::function<bool(unsigned code)>& hasKey) {
    return std::count_if(lettersAndDigits.begin(), lettersAndDigits.end(), hasKey) >=
               enoughOfThem ||
           std::all_of(keypad.begin(), keypad.end(), hasKey);
}

} // namespace tamsel
