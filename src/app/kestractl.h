#pragma once
// The commands of kestractl, one file each (ctl_*.cpp). Each takes the words
// after its name and returns the exit status.

#include <string>
#include <vector>

namespace kestra::ctl {

using Args = std::vector<std::string>;

// --quiet: no progress bar and no closing report of read and send; problems
// are still told.
extern bool quiet;

// Prints the usage (and a problem, if any) to stderr; returns 2.
int usage(const std::string& problem);

int convert(const Args& args);
int detect(const Args& args);
int exportCsv(const Args& args);
int general(const Args& args);
int import(const Args& args);
int monitor(const Args& args);
int print(const Args& args);
int read(const Args& args);
int send(const Args& args);
int sim(const Args& args);

// Takes "--name value" options out of args into the map; false (after the
// usage message) for an unknown option or a missing value. What is left in
// args are the positional words.
bool takeOptions(Args& args, const std::vector<std::string>& valued, const std::vector<std::string>& flags,
                 std::vector<std::pair<std::string, std::string>>& options);

} // namespace kestra::ctl
