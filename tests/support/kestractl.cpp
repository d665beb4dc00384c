#include "support/kestractl.h"

#include <cstdlib>
#include <sys/wait.h>

namespace kestra::test {

CtlRun runKestractl(const TempDir& home, const std::string& args, int timeLimit)
{
    const std::string errFile = home.file("stderr.txt"), outFile = home.file("stdout.txt");
    const std::string command = "HOME='" + home.path().string() + "' XDG_CONFIG_HOME='" + home.file("config") +
                                "' XDG_DATA_HOME='" + home.file("data") + "' QT_QPA_PLATFORM=offscreen " +
                                (timeLimit > 0 ? "timeout -s KILL " + std::to_string(timeLimit) + " " : std::string()) +
                                KESTRACTL_PATH " " +
                                args + " 2>'" + errFile + "' >'" + outFile + "'";
    CtlRun run;
    const int raw = std::system(command.c_str());
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    run.err = readBytes(errFile);
    run.out = readBytes(outFile);
    return run;
}

} // namespace kestra::test
