// The keys of a remote control by name: the values that a page receives for each, and the key event for the
// window.
#ifndef CORVIS_TV_REMOTE_KEYS_H_
#define CORVIS_TV_REMOTE_KEYS_H_

#include <string_view>

namespace corvis::tv {

struct RemoteKey {
  std::string_view name;
  // KeyboardEvent's `key`, `code` and `keyCode`. TVs differ in `keyCode`, which a run can change for each
  // key.
  const char* key;
  const char* code;
  unsigned key_code;
  // The X keysym, from which the engine derives default actions.
  unsigned symbol;
};

// Codes of keys that browsers don't define are those of CTA-2014, which most TVs use.
constexpr RemoteKey kRemoteKeys[] = {
    {"Left", "ArrowLeft", "ArrowLeft", 37, 0xff51},
    {"Up", "ArrowUp", "ArrowUp", 38, 0xff52},
    {"Right", "ArrowRight", "ArrowRight", 39, 0xff53},
    {"Down", "ArrowDown", "ArrowDown", 40, 0xff54},
    {"OK", "Enter", "Enter", 13, 0xff0d},
    {"Back", "GoBack", "BrowserBack", 461, 0x1008ff26},
    {"Play", "MediaPlay", "MediaPlay", 415, 0x1008ff14},
    {"Pause", "MediaPause", "MediaPause", 19, 0x1008ff31},
    {"PlayPause", "MediaPlayPause", "MediaPlayPause", 179, 0x1008ff14},
    {"Stop", "MediaStop", "MediaStop", 413, 0x1008ff15},
    {"FastForward", "MediaFastForward", "MediaFastForward", 417, 0x1008ff97},
    {"Rewind", "MediaRewind", "MediaRewind", 412, 0x1008ff3e},
    {"ChannelUp", "ChannelUp", "ChannelUp", 427, 0x1008ff6f},
    {"ChannelDown", "ChannelDown", "ChannelDown", 428, 0x1008ff70},
    {"Red", "ColorF0Red", "ColorF0Red", 403, 0x1008ffa3},
    {"Green", "ColorF1Green", "ColorF1Green", 404, 0x1008ffa4},
    {"Yellow", "ColorF2Yellow", "ColorF2Yellow", 405, 0x1008ffa5},
    {"Blue", "ColorF3Blue", "ColorF3Blue", 406, 0x1008ffa6},
    {"0", "0", "Digit0", 48, '0'},
    {"1", "1", "Digit1", 49, '1'},
    {"2", "2", "Digit2", 50, '2'},
    {"3", "3", "Digit3", 51, '3'},
    {"4", "4", "Digit4", 52, '4'},
    {"5", "5", "Digit5", 53, '5'},
    {"6", "6", "Digit6", 54, '6'},
    {"7", "7", "Digit7", 55, '7'},
    {"8", "8", "Digit8", 56, '8'},
    {"9", "9", "Digit9", 57, '9'},
};

// Returns null for an unknown name.
constexpr const RemoteKey* FindRemoteKey(std::string_view name) {
  for (const RemoteKey& key : kRemoteKeys) {
    if (key.name == name) return &key;
  }
  return nullptr;
}

// The largest code that a key may have.
constexpr unsigned kMostKeyCode = 0xffff;

}  // namespace corvis::tv

#endif  // CORVIS_TV_REMOTE_KEYS_H_
