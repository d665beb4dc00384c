#include "link/quicklink.h"

#include "core/text.h"
#include "link/vocabulary.h"

namespace kestra::quick {

namespace {

bool command(ExchangeEngine& engine, const std::string& text)
{
    engine.sendline(text);
    return engine.wait(engine.commdelay());
}

std::string letter(int bank) { return std::string(1, static_cast<char>('A' + bank)); }

} // namespace

bool wakeUp(ExchangeEngine& engine, int bc785d, bool bankTags)
{
    if (bankTags) {
        if (!command(engine, wire::key(1)) || !command(engine, wire::key(1))) return false;
    } else if (!command(engine, wire::exitKey(bc785d))) {
        return false;
    }
    for (const char* wake : wire::kWakeUp)
        if (!command(engine, wake)) return false;
    engine.port().input();  // the wake-up's replies are not the next command's
    return true;
}

bool readPriorities(ExchangeEngine& engine, PriorityFields& fields)
{
    for (int bank = 0; bank < 10; ++bank) {
        engine.port().input();
        if (!command(engine, wire::readPriority(bank))) return false;
        const std::string reply = engine.collect(1);
        if (reply.rfind(wire::readPriority(bank), 0) == 0) fields[bank] = Mid(reply, 5, 3);
    }
    return true;
}

bool sendPriorities(ExchangeEngine& engine, PriorityFields& fields)
{
    std::array<int, 10> channels{};
    for (int bank = 0; bank < 10; ++bank) {
        const int first = bank * 100 + 1, last = bank * 100 + 100;
        const std::string field = trim(fields[bank]);
        // "000" is how the scanner shows channel 1000, the last of bank 10.
        long long value = bank == 9 && field == "000" ? 1000 : IntVal(field);
        if (value < first || value > last) {
            value = first;
            fields[bank] = std::to_string(first);
        }
        channels[bank] = static_cast<int>(value);
    }
    for (int bank = 0; bank < 10; ++bank)
        if (!command(engine, "PC " + letter(bank) + wire::channel3(channels[bank]))) return false;
    return true;
}

bool updateBankTags(ExchangeEngine& engine, const std::array<std::string, 12>& banktags)
{
    for (int bank = 0; bank < 10; ++bank)
        if (!command(engine, wire::setBankTag(bank, banktags[bank]))) return false;
    return true;
}

const std::array<const char*, 8>& easyDelays()
{
    static const std::array<const char*, 8> delays = {"None", "1 sec", "2 sec", "4 sec", "Inf.", "-2 sec", "-5 sec", "-10 sec"};
    return delays;
}

bool easyProgram(ExchangeEngine& engine, int start, int end, const EasyChoices& c, const std::function<bool()>& closing)
{
    if (start < 1 || end > 1000 || end < start) return false;
    static const char* delayCommands[8] = {"DLF", "DLN +1", "DLN +2", "DLN +4", "DLN +-", "DLN -2", "DLN -5", "DLN -10"};
    for (int channel = start; channel <= end; ++channel) {
        if (closing && closing()) return false;
        if (!command(engine, wire::selectChannel(channel))) return false;
        std::vector<std::string> commands;
        if (c.trunk) commands.push_back(wire::key(13, true));
        if (c.delay && c.delayIndex >= 0 && c.delayIndex < 8) commands.push_back(delayCommands[c.delayIndex]);
        if (c.record) commands.push_back(wire::setRecord(c.recordOn));
        if (c.beep) commands.push_back(wire::setBeep(channel, c.beepOn));
        if (c.lockout) commands.push_back(wire::setLockout(c.lockoutOn));
        if (c.atten) commands.push_back(wire::setAttenuator(c.attenOn));
        for (const std::string& text : commands)
            if (!command(engine, text)) return false;
    }
    return true;
}

} // namespace kestra::quick
