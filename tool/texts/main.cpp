// Writes what is generated from the commands and steps: tgx_texts man|bash.
#include <cstdio>
#include <string>
#include <string_view>

#include "tool/CommandLine.h"
#include "tool/Completion.h"
#include "tool/HostCalls.h"
#include "tool/Manual.h"

/// Where the forwarders take the tables from.
const HostTables* GetHostTables() { return TGXHost_Tables(); }

int main(int argc, char** argv) {
  const std::string_view kind = argc == 2 ? argv[1] : "";
  if (kind != "man" && kind != "bash") return 1;
  std::string text;
  tgx::tool::DescribeCommandLine(
      [&](const CLI::App& app) { text = kind == "man" ? tgx::tool::ManualPage(app) : tgx::tool::BashCompletion(app); });
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0 ? 0 : 1;
}
