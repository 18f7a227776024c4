#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <qpdf/InputSource.hh>

#include "host/core/FileDescriptor.h"
#include "host/core/HostError.h"

namespace tgx::host {

/// What qpdf reads a document from. It reads objects when they are first needed, in small pieces and with a change of place
/// before each; so places are kept here without asking the system.
///
/// qpdf takes an object that it cannot read for null and goes on. A reading that failed is therefore kept, for the saving to
/// refuse: a document that lost objects that way must not be written.
class Source : public InputSource {
 public:
  qpdf_offset_t findAndSkipNextEOL() override;
  std::string const& getName() const override { return name_; }
  qpdf_offset_t tell() override { return place_; }
  void seek(qpdf_offset_t offset, int whence) override;
  void rewind() override { place_ = 0; }
  size_t read(char* into, size_t length) override;
  void unreadCh(char) override;

  /// How many bytes there are; known from the start.
  qpdf_offset_t Size() const noexcept { return size_; }

  /// Allows as much reading as a whole pass over the document may take. In a file made for it each object can make qpdf
  /// search to the end; reading that goes far beyond the size of the file is ended.
  void AllowOnePass() noexcept;

  /// The first failure, which no later reading undoes.
  void ThrowFailure() const;

 protected:
  Source(std::string name, qpdf_offset_t size) : name_(std::move(name)), size_(size) { AllowOnePass(); }

  /// The bytes from an offset below Size() on, at least one unless the file has been cut since.
  virtual std::string_view At(qpdf_offset_t offset) = 0;

  [[noreturn]] void Fail(ASErrorCode code, const std::string& reason);

 private:
  std::string_view Next();
  void Spend(std::size_t bytes);

  std::string name_;
  qpdf_offset_t size_;
  qpdf_offset_t place_ = 0;
  std::uint64_t allowance_ = 0;
  std::optional<HostError> failure_;
};

/// A file, through a cache of blocks. Keeps the file open, so it may be replaced or removed meanwhile.
class FileSource : public Source {
 public:
  FileSource(FileDescriptor file, std::string name, qpdf_offset_t size);

 protected:
  std::string_view At(qpdf_offset_t offset) override;

 private:
  static constexpr std::size_t kBlockSize = 1 << 14;
  static constexpr std::size_t kBlocks = 64;
  struct Block {
    qpdf_offset_t start = -1;
    std::size_t length = 0;
  };

  FileDescriptor file_;
  std::array<Block, kBlocks> blocks_;
  std::unique_ptr<char[]> bytes_;  // of all blocks, in their order
};

/// A copy of bytes in memory.
class MemorySource : public Source {
 public:
  MemorySource(std::string_view bytes, std::string name);

 protected:
  std::string_view At(qpdf_offset_t offset) override;

 private:
  std::string bytes_;
};

}  // namespace tgx::host
