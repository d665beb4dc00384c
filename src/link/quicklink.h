#pragma once
// The three small windows that talk to the scanner directly, each on a port
// of its own and without the transfer's state machine: every command is sent,
// the delay of the baud rate waited, and the next one follows. Priority
// Channels (prio), Setup Bank Tags' "Update scanner now" (banknamen) and Easy
// Program (easyprog), which sets flags of a range of channels already in the
// scanner and leaves their frequencies alone.

#include "link/exchange.h"

#include <array>
#include <functional>
#include <string>

namespace kestra::quick {

// The wake-up when a window loads: the exit key (for Setup Bank Tags "KEY01"
// twice instead), then IDF, CDF and QUF, each followed by the delay.
bool wakeUp(ExchangeEngine& engine, int bc785d, bool bankTags);

// ---- Priority Channels --------------------------------------------------------
// One field per bank (0..9) as the window shows it: the channel number.
using PriorityFields = std::array<std::string, 10>;

// "Read": "PC " and the bank's letter; a reply of that bank puts its three
// digits into the field. Fields of banks that did not answer stay.
bool readPriorities(ExchangeEngine& engine, PriorityFields& fields);
// "Send": a field below its bank's first channel or above its last (an empty
// field counts as 0) becomes the first channel, in the field too; then each
// goes as "PC ", the letter and three digits.
bool sendPriorities(ExchangeEngine& engine, PriorityFields& fields);

// ---- Setup Bank Tags --------------------------------------------------------------
// "Update scanner now": "TA B ", the letter, a blank and the tag, banks 0..9.
bool updateBankTags(ExchangeEngine& engine, const std::array<std::string, 12>& banktags);

// ---- Easy Program -------------------------------------------------------------------
struct EasyChoices {
    // Each parameter ticked or not, and its choice (the list's index).
    bool trunk = false;
    bool delay = false;
    int delayIndex = 0;  // "None", "1 sec", "2 sec", "4 sec", "Inf.", "-2 sec", "-5 sec", "-10 sec"
    bool record = false, recordOn = false;
    bool beep = false, beepOn = false;
    bool lockout = false, lockoutOn = false;
    bool atten = false, attenOn = false;
};
// The delay list of the window, in the order of its commands.
const std::array<const char*, 8>& easyDelays();

// "Start": channels start..end (1..1000, end not under start; else nothing
// happens and false), each selected with "MA" and then given the ticked
// parameters in the order trunk, delay, record, beep, lockout, attenuator.
// closing is asked once a channel: the window is being closed.
bool easyProgram(ExchangeEngine& engine, int start, int end, const EasyChoices& choices,
                 const std::function<bool()>& closing = {});

} // namespace kestra::quick
