#include "host/pdmodel/Source.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <system_error>

#include <unistd.h>
#include <qpdf/QPDFExc.hh>

namespace tgx::host {
namespace {

constexpr std::uint64_t kFreeReading = std::uint64_t{1} << 28;
constexpr std::uint64_t kReadingPerByte = 200;

bool IsLineEnd(char c) { return c == '\r' || c == '\n'; }

}  // namespace

void Source::AllowOnePass() noexcept { allowance_ = kFreeReading + kReadingPerByte * static_cast<std::uint64_t>(size_); }

void Source::ThrowFailure() const {
  if (failure_) throw HostError(*failure_);
}

void Source::Fail(ASErrorCode code, const std::string& reason) {
  if (!failure_) failure_.emplace(code, name_ + ": " + reason);
  const auto qpdfCode = code == kASFileError ? qpdf_e_system : qpdf_e_damaged_pdf;
  throw QPDFExc(qpdfCode, name_, "", place_, reason);
}

void Source::Spend(std::size_t bytes) {
  if (bytes > allowance_) Fail(kASDamagedDocument, "damaged: reading it does not come to an end");
  allowance_ -= bytes;
}

std::string_view Source::Next() { return place_ < size_ ? At(place_) : std::string_view(); }

void Source::seek(qpdf_offset_t offset, int whence) {
  const qpdf_offset_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? place_ : size_;
  qpdf_offset_t place = 0;
  if (__builtin_add_overflow(base, offset, &place) || place < 0) throw std::runtime_error("a place before the file's start");
  place_ = place;
}

size_t Source::read(char* into, size_t length) {
  last_offset = place_;
  size_t copied = 0;
  while (copied < length) {
    const std::string_view next = Next().substr(0, length - copied);
    if (next.empty()) break;
    std::memcpy(into + copied, next.data(), next.size());
    copied += next.size();
    place_ += static_cast<qpdf_offset_t>(next.size());
  }
  if (copied == 0 && length > 0) place_ = last_offset = size_;  // as qpdf's own sources do at the end
  Spend(copied);
  return copied;
}

void Source::unreadCh(char) {
  if (place_ > 0) --place_;
}

qpdf_offset_t Source::findAndSkipNextEOL() {
  const qpdf_offset_t start = place_;
  std::string_view next = Next();
  auto found = next.end();
  while (!next.empty() && (found = std::find_if(next.begin(), next.end(), IsLineEnd)) == next.end()) {
    place_ += static_cast<qpdf_offset_t>(next.size());
    next = Next();
  }
  if (next.empty()) {
    place_ = size_;
    Spend(static_cast<std::size_t>(std::max<qpdf_offset_t>(size_ - start, 0)));
    return size_;
  }
  place_ += found - next.begin();
  const qpdf_offset_t lineEnd = place_;
  for (next = Next(); !next.empty(); next = Next()) {
    const auto after = std::find_if_not(next.begin(), next.end(), IsLineEnd);
    place_ += after - next.begin();
    if (after != next.end()) break;
  }
  Spend(static_cast<std::size_t>(place_ - start));
  return lineEnd;
}

FileSource::FileSource(FileDescriptor file, std::string name, qpdf_offset_t size)
    : Source(std::move(name), size), file_(std::move(file)), bytes_(new char[kBlocks * kBlockSize]) {}

std::string_view FileSource::At(qpdf_offset_t offset) {
  const std::size_t number = static_cast<std::size_t>(offset) / kBlockSize;
  const qpdf_offset_t start = static_cast<qpdf_offset_t>(number) * static_cast<qpdf_offset_t>(kBlockSize);
  Block& block = blocks_[number % kBlocks];
  char* bytes = bytes_.get() + (number % kBlocks) * kBlockSize;
  if (block.start != start) {
    block.start = -1;
    ssize_t length = 0;
    do {
      length = ::pread(file_.Number(), bytes, kBlockSize, start);
    } while (length < 0 && errno == EINTR);
    if (length < 0) Fail(kASFileError, "cannot be read: " + std::generic_category().message(errno));
    block = {start, static_cast<std::size_t>(length)};
  }
  const std::string_view whole(bytes, block.length);
  const auto skipped = static_cast<std::size_t>(offset - start);
  if (skipped >= whole.size()) Fail(kASFileError, "cannot be read: it was cut while it was open");
  return whole.substr(skipped);
}

MemorySource::MemorySource(std::string_view bytes, std::string name)
    : Source(std::move(name), static_cast<qpdf_offset_t>(bytes.size())), bytes_(bytes) {}

std::string_view MemorySource::At(qpdf_offset_t offset) {
  return std::string_view(bytes_).substr(static_cast<std::size_t>(offset));
}

}  // namespace tgx::host
