#pragma once
// setupdata: the settings of setup.ini in memory, one 16-bit value per key,
// with the built-in defaults. The keys keep their file names.

#include <vector>

namespace kestra {

struct Settings {
    // [setup]
    int ffont = 1;
    int model = 0;
    int khz9 = 0;        // key "9khz"
    int smart = 1;
    int round = 1;
    int zero = 0;
    int bandplan = 1;
    int savenames = 1;
    int cleartag = 0;
    int window = 0;
    int toolbar = 1;
    int helpbar = 1;
    int synctagsr = 1;
    int synctagst = 1;
    int remtags = 1;
    int remtrunk = 1;
    int copytags = 0;
    int shiftdir = 0;
    int confirm = 0;
    int delid = 1;
    int textra = 0;
    int loadlast = 0;
    int tabwidth = 0;
    int linkbank = 0;
    // Read Data takes a reply only when a second copy of it agrees.
    int verifyread = 1;
    int option1 = 0;
    // Automatic Advanced Frequency Upload: on from a fresh install, so that a
    // channel sent keeps its step where "PM" alone would give the band's.
    int option2 = 1;
    int option3 = 0;
    int option4 = 0;
    int option5 = 0;
    int option6 = 0;
    int option7 = 0;
    int option8 = 0;
    int option9 = 0;
    int option10 = 0;
    int option11 = 1;
    int option12 = 0;
    int vcstat = 0;
    int align = 0;
    int expert = 0;
    int delay1 = 100;
    int delay2 = 200;
    int delay3 = 400;
    int delay4 = 100;
    int backupdelay = 30;
    int backena = 1;
    int findoptie0 = 0;
    int findoptie1 = 0;
    int findoptie2 = 0;
    int qview = 1;
    int vstart = 0;
    int vpos = 0;
    int infob = 1;
    int vcm = 0;
    int enc1 = 1;
    int enc2 = 1;
    int enc3 = 1;
    int enc4 = 1;
    // [cputune]
    int val2 = 200;
    int val3 = 0;  // written, never read back
};

// One key of setup.ini: its section and name, where it lives in Settings, and
// whether it is a flag (written as 0 or 1 only) or a number.
struct SettingKey {
    const char* section;
    const char* name;
    int Settings::*member;
    bool flag;
};

// Every key setup.ini holds, in the order the file is written. "remtrunk" is
// not among them: it is read at start-up but never written.
const std::vector<SettingKey>& settingKeys();

} // namespace kestra
