#include <fcntl.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "tool/CommandLine.h"
#include "tool/HostCalls.h"
#include "tool/Messages.h"

/// Where the forwarders take the tables from.
const HostTables* GetHostTables() { return TGXHost_Tables(); }

namespace {

/// Puts something in the place of standard streams that the caller closed: a file opened later must not get their numbers
/// and be taken for them. What stands in for standard output fails every write.
void HoldStandardStreams() {
  for (int stream = 0; stream <= 2; ++stream) {
    if (fcntl(stream, F_GETFD) == -1 && open("/dev/null", O_RDONLY) != stream) std::abort();
  }
}

int Run(int argc, char** argv) {
  try {
    return tgx::tool::FinishOutput(tgx::tool::RunCommandLine(argc, argv));
  } catch (const tgx::tool::Failure& failure) {
    tgx::tool::Warn(failure.what());
    return failure.Status();
  } catch (const std::bad_alloc&) {
    tgx::tool::Warn("not enough memory");
  } catch (const std::exception& error) {
    tgx::tool::Warn(error.what());
  }
  return tgx::tool::kUsageOrFileError;
}

}  // namespace

int main(int argc, char** argv) {
  HoldStandardStreams();
  // Failed writes are told by the exit status, and by a message if nobody meant it: a file-size limit, a reader that went
  // away.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  const int status = Run(argc, argv);
#ifdef __SANITIZE_ADDRESS__
  return status;
#else
  std::fflush(stdout);
  std::_Exit(status);  // documents are left open, see tool/Document.h
#endif
}
