#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include <unistd.h>

#include <gtest/gtest.h>
#include <tgx/embedded_host.h>
#include <qpdf/QPDF.hh>

#include "tests/support/Paths.h"

namespace tgx::host {

/// A test with a folder of its own, gone afterwards.
class FileTest : public testing::Test {
 protected:
  FileTest() {
    std::string pattern = (std::filesystem::path(testing::TempDir()) / "tgx-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    folder_ = pattern;
  }
  ~FileTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::string Path(std::string_view name) const { return folder_ + "/" + std::string(name); }

  std::string Put(std::string_view name, std::string_view bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
    return Path(name);
  }

  static std::string Read(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
  }

  static std::string Corpus(std::string_view name) { return test::DataPath("corpus/") + std::string(name); }
  static std::string Sample(std::string_view name) { return test::DataPath("samples/") + std::string(name); }

  /// The names in the test's folder, one after the other: what a failure must not add to.
  std::string Listing() const {
    std::string names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) names += entry.path().filename().string() + "\n";
    return names;
  }

  /// What another program says about a file: empty when it finds nothing wrong.
  static std::string QpdfCheck(const std::string& path) {
    const std::string report = path + ".check";
    const int status = std::system(("qpdf --check '" + path + "' >'" + report + "' 2>&1").c_str());
    std::string text = status == 0 ? "" : Read(report);
    std::filesystem::remove(report);
    return text;
  }

  std::string folder_;
};

/// Gives up the superuser's rights for as long as it lives: permissions mean nothing to the superuser.
class OrdinaryUser {
 public:
  OrdinaryUser() {
    if (self_ == 0) Become(kNobody);
  }
  ~OrdinaryUser() {
    if (self_ == 0) Become(self_);
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;
  static void Become(uid_t user) { EXPECT_EQ(::seteuid(user), 0); }
  uid_t self_ = ::geteuid();
};

/// An open document, closed at the end.
class Opened {
 public:
  explicit Opened(const std::string& path, const TGXHostOpenOptions* options = nullptr)
      : doc_(TGXHost_OpenFile(path.c_str(), options)) {
    EXPECT_NE(doc_, nullptr) << TGXHost_LastError();
  }
  ~Opened() {
    if (doc_ != nullptr) TGXHost_Close(doc_);
  }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  operator PDDoc() const { return doc_; }  // NOLINT(google-explicit-constructor): stands for the document in calls

 private:
  PDDoc doc_;
};

}  // namespace tgx::host
