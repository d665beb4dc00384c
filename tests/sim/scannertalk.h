#pragma once
// Talking to the virtual scanner in a test: commands sent for their effect,
// and commands checked against their replies.

#include "sim/virtualscanner.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string_view>
#include <utility>

namespace kestra::test {

inline void sendAll(sim::VirtualScanner& s, std::initializer_list<std::string_view> commands)
{
    for (std::string_view command : commands) s.command(command);
}

// Each command and the reply it must get, written without the final CR.
inline void expectReplies(sim::VirtualScanner& s,
                          std::initializer_list<std::pair<std::string_view, std::string_view>> talk)
{
    for (const auto& [command, reply] : talk) EXPECT_EQ(s.command(command), std::string(reply) + "\r") << command;
}

} // namespace kestra::test
