// kestractl: the program's work without a window, for scripts and tests.

#include "kestractl.h"

#include <algorithm>
#include <iostream>

namespace kestra::ctl {

namespace {
// The help of each command: its synopsis, then what it does.
struct CommandHelp {
    const char* name;
    const char* text;
};

const CommandHelp kCommands[] = {
    {"convert",
        "  convert IN OUT [--model MODEL] [--dir FOLDER]\n"
        "      open IN as the main window opens it (a KESTRA MEM file, a LORVEN MEM file,\n"
        "      or the CSV layout of Open Special) and save it as OUT.\n"
        "      MODEL is BC250D, BC296D, BC785D, BC796D or UBC3300 (default: the model\n"
        "      last chosen in the program). FOLDER holds setup.ini and the other files\n"
        "      of the program (default: the program's own folder).\n"},
    {"import",
        "  import IN OUT.mem [--format csv|text|html|icf|mem|chirp] [--bank N] [--base IN.mem] [--dir FOLDER]\n"
        "      bring frequencies from IN into a document and save it as OUT.mem. csv,\n"
        "      text and html harvest every frequency found (Advanced Data Import) and\n"
        "      write the first 100 into bank N (1..10 or D, default 1) from channel 1;\n"
        "      chirp reads a CHIRP CSV list into the channels from bank N on and prints\n"
        "      what was taken and refused; icf writes the eight ICF banks into banks 1\n"
        "      to 8; mem takes the channels and trunk IDs of another MEM file (bank N\n"
        "      only, when given). The format follows the extension when not given. --base starts\n"
        "      from a MEM file instead of an empty document.\n"},
    {"export",
        "  export IN.mem OUT.csv [--format bank|ids|search|bandplan|chirp] [--bank N] [--dir FOLDER]\n"
        "      write one table of IN.mem as CSV: the channels (of bank N, or all ten),\n"
        "      the trunk IDs, the search ranges, the bandplan, or a CHIRP CSV list.\n"},
    {"detect",
        "  detect [--dir FOLDER]\n"
        "      AutoDetect: try every bound port of FOLDER at every speed and print\n"
        "      \"port N, baud B, model M\" for the last scanner that answered; exit\n"
        "      status 1 when none did. The built-in virtual scanner answers as the\n"
        "      model last chosen in the program (UBC3300 when none was).\n"},
    {"general",
        "  general read|send FILE.mem [--port P] [--dir FOLDER] [--set \"LABEL=CHOICE\" ...]\n"
        "      the scanner's general parameters: read prints the nine system options\n"
        "      (\"Key Beep: off\") and puts the FIPS codes into FILE.mem; send sends the\n"
        "      FIPS codes of FILE.mem and each option given with --set, e.g.\n"
        "      --set \"Key Beep=off\" --set \"SQ Mode=CSQ\".\n"},
    {"monitor",
        "  monitor [--port P] [--duration S] [--dir FOLDER] [--log FILE.csv] [--record DIR]\n"
        "      the Virtual Control without a window: polls the scanner on port P (a port\n"
        "      number of the binding, default the one of com250.ini, or a device path)\n"
        "      and prints a line for each change of its state: milliseconds since the\n"
        "      start, mode, bank/channel, frequency, \"tag\", trunk ID, signal and\n"
        "      squelch. Runs for S seconds or until Ctrl+C; exit status 1 when contact\n"
        "      with the scanner is lost for good. --log keeps the hit log in FILE.csv;\n"
        "      --record saves each transmission from the sound card as a WAV file in DIR.\n"},
    {"sim",
        "  sim --model MODEL [--link PATH] [--load FILE.mem] [--dump FILE.mem] [--log FILE]\n"
        "      [--latency MS] [--faults LIST] [--baud RATE] [--activity seed=N,busy=F] [--traffic FILE]\n"
        "      [--menu-shift N]\n"
        "      run the virtual scanner on a pseudo-terminal that any serial program can\n"
        "      open; its device path is the first line printed. PATH becomes a link to\n"
        "      it. --load fills the scanner's memory from a MEM file; on SIGINT or\n"
        "      SIGTERM the memory is written to the --dump file and the scanner stops.\n"
        "      --log writes each command and reply with the time in milliseconds.\n"
        "      --latency delays every reply. --baud sets the scanner's speed (default\n"
        "      19200); a client at another speed hears garbage. LIST is faults of the\n"
        "      line, e.g. drop=0.05,split=0.3,garble=0.01,stray=0.01,delay=200,seed=7.\n"
        "      --menu-shift N moves the trunk bank menu by N entries, as another\n"
        "      firmware might: the walks of a transfer must find their items by name.\n"
        "      The scanner scans and searches as time passes. --activity makes random\n"
        "      transmissions on its channels and trunk IDs, the same for the same seed,\n"
        "      on the air a share F (0..1) of the time; --traffic plays a script, one\n"
        "      line START_MS,DURATION_MS,WHAT[,ctcss=HZ|dcs=CODE] each, WHAT being ch=N,\n"
        "      f=MHZ or id=ID; or START_MS,0,keys=K;K;... for front-panel key presses.\n"
        "      The log then also has a SHOW line for each change of the display.\n"},
    {"print",
        "  print IN.mem OUT.pdf --report bank|all|memsearch|search|bandplan|ids [--bank N]\n"
        "      [--model MODEL] [--date TEXT]\n"
        "      print a report of IN.mem into a PDF file (A4), as the Print window does:\n"
        "      bank N (default 1; 11 is the Dummy bank), all memory banks, the memory\n"
        "      banks and the search ranges, the search ranges, the bandplan, or the\n"
        "      trunk IDs of bank N (of every bank when no --bank is given). MODEL\n"
        "      decides which record flag the bank report shows (default: the model\n"
        "      last chosen in the program); TEXT replaces today's date in the title.\n"},
    {"read",
        "  read OUT.mem [--port P] [--banks all|N|A-B] [--data LIST] [--merge] [--base IN.mem] [--dir FOLDER]\n"
        "      Read Data: the scanner's channels (all banks, bank N of 1..10, or the\n"
        "      channels A to B) into OUT.mem; --base starts from a file, --merge keeps\n"
        "      what is not read. LIST: what is moved, channels (the default), ids\n"
        "      (trunk ID lists and tags), trunk (trunk bank settings) and search\n"
        "      (search ranges) joined by commas, or all.\n"},
    {"send",
        "  send IN.mem [--port P] [--banks all|N|A-B] [--data LIST] [--dir FOLDER]\n"
        "      Send Data: the channels of IN.mem (and what else LIST names) into the\n"
        "      scanner.\n"
        "      P is a port number of the binding (default: the one of com250.ini), a\n"
        "      device path, or sim:MODEL for the built-in virtual scanner, whose\n"
        "      memory is kept in FOLDER. Questions are answered yes.\n"},
};

const char* kHead =
    "usage: kestractl [--quiet] COMMAND [OPTIONS]\n"
    "       kestractl COMMAND --help\n"
    "       kestractl --version\n"
    "\n"
    "commands:\n";

const char* kTail =
    "\n"
    "options of every command:\n"
    "  --quiet, -q   no progress bar and no closing report of read and send;\n"
    "                problems are still told on stderr. The progress bar (the\n"
    "                channel and the time left) is shown only when stderr is a\n"
    "                terminal.\n"
    "  --help, -h    the help of the command.\n"
    "\n"
    "exit status:\n"
    "  0  done\n"
    "  1  refused or failed (the reason is on stderr)\n"
    "  2  usage: an unknown command or option, or a missing value\n";

std::string fullUsage()
{
    std::string text = kHead;
    for (const CommandHelp& command : kCommands) text += command.text;
    return text + kTail;
}

// The help of one command, "" for an unknown one. Read and send share their
// options, so each shows both.
std::string commandHelp(const std::string& name)
{
    std::string text;
    const bool transfer = name == "read" || name == "send";
    for (const CommandHelp& command : kCommands) {
        const std::string commandName = command.name;
        if (name == commandName || (transfer && (commandName == "read" || commandName == "send")))
            text += text.empty() ? std::string("usage: kestractl") + (command.text + 1) : std::string(command.text);
    }
    return text;
}
} // namespace

int usage(const std::string& problem)
{
    if (!problem.empty()) std::cerr << "kestractl: " << problem << "\n\n";
    std::cerr << fullUsage();
    return 2;
}

bool quiet = false;

bool takeOptions(Args& args, const std::vector<std::string>& valued, const std::vector<std::string>& flags,
                 std::vector<std::pair<std::string, std::string>>& options)
{
    Args rest;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (std::find(valued.begin(), valued.end(), a) != valued.end()) {
            if (i + 1 >= args.size()) {
                usage(a + " needs a value");
                return false;
            }
            options.emplace_back(a, args[++i]);
        } else if (std::find(flags.begin(), flags.end(), a) != flags.end()) {
            options.emplace_back(a, "");
        } else if (a.rfind("--", 0) == 0) {
            usage("unknown option " + a);
            return false;
        } else {
            rest.push_back(a);
        }
    }
    args = rest;
    return true;
}

} // namespace kestra::ctl

int main(int argc, char** argv)
{
    using namespace kestra::ctl;
    Args args;
    bool help = false;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--quiet" || word == "-q")
            quiet = true;
        else if (word == "--help" || word == "-h")
            help = true;
        else
            args.push_back(word);
    }
    if (!args.empty() && args[0] == "--version") {
        std::cout << "kestractl " << KESTRA_VERSION << '\n';
        return 0;
    }
    if (args.empty()) {
        if (!help) return usage("no command");
        std::cout << fullUsage();
        return 0;
    }
    const std::string command = args[0];
    args.erase(args.begin());
    if (help) {
        const std::string text = commandHelp(command);
        if (text.empty()) return usage("unknown command " + command);
        std::cout << text << kTail;
        return 0;
    }
    if (command == "convert") return convert(args);
    if (command == "detect") return detect(args);
    if (command == "export") return exportCsv(args);
    if (command == "import") return import(args);
    if (command == "monitor") return monitor(args);
    if (command == "general") return general(args);
    if (command == "print") return print(args);
    if (command == "read") return read(args);
    if (command == "send") return send(args);
    if (command == "sim") return sim(args);
    return usage("unknown command " + command);
}
