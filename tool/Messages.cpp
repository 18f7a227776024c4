#include "tool/Messages.h"

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tool/TextString.h"

namespace tgx::tool {
namespace {

/// errno of the first write to standard output that failed.
int outputError = 0;

}  // namespace

Failure::Failure(std::string_view file, std::string_view reason) : Failure(std::string(file).append(": ").append(reason)) {}

std::string Reason(int error) {
  std::string text = std::strerror(error);
  if (!text.empty()) text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
  return text;
}

void Warn(std::string_view message) {
  const std::string line = "tgx: " + OneLine(message) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

void Print(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() && outputError == 0) outputError = errno;
}

int FinishOutput(int status) {
  if (std::fflush(stdout) != 0 && outputError == 0) outputError = errno;
  if (outputError == 0) return status;
  // Whoever reads only the beginning of a long result wants no complaint about it.
  if (outputError == EPIPE) return kUsageOrFileError;
  throw Failure("standard output", Reason(outputError));
}

}  // namespace tgx::tool
