#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// Makes a document of another shape out of one in PDF syntax: leads a reference elsewhere, exchanges a name for another of
/// the same document, or puts a reference in the place of a number. The file stays one that a parser reads, so what is
/// exercised is what comes after it: loops, shared objects, objects of the wrong kind.
class ReferenceMutator {
 public:
  explicit ReferenceMutator(std::string_view document) : document_(document) { FindTokens(); }

  std::string Mutate(std::uint32_t seed) const {
    std::minstd_rand random(seed);
    const auto pick = [&](const std::vector<std::string_view>& tokens) { return tokens[random() % tokens.size()]; };
    if (references_.empty() || names_.empty()) return std::string(document_);
    switch (random() % 3) {
      case 0:
        return With(pick(references_), pick(references_));
      case 1:
        return With(pick(names_), pick(names_));
      default:
        return With(pick(numbers_.empty() ? references_ : numbers_), pick(references_));
    }
  }

 private:
  std::string With(std::string_view token, std::string_view other) const {
    std::string changed(document_);
    return changed.replace(static_cast<std::size_t>(token.data() - document_.data()), token.size(), other);
  }

  static bool IsDigit(char c) { return c >= '0' && c <= '9'; }
  static bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || IsDigit(c) || c == '_'; }

  std::size_t EndOf(std::size_t from, bool (*belongs)(char)) const {
    while (from < document_.size() && belongs(document_[from])) ++from;
    return from;
  }

  void FindTokens() {
    for (std::size_t at = 0; at < document_.size();) {
      if (document_[at] == '/') {
        const std::size_t end = EndOf(at + 1, IsLetter);
        names_.push_back(document_.substr(at, end - at));
        at = end;
      } else if (IsDigit(document_[at])) {
        std::size_t end = EndOf(at, IsDigit);
        const bool isReference = document_.substr(end).starts_with(" 0 R");
        if (isReference) end += 4;
        (isReference ? references_ : numbers_).push_back(document_.substr(at, end - at));
        at = end;
      } else {
        ++at;
      }
    }
  }

  std::string_view document_;
  std::vector<std::string_view> references_, names_, numbers_;
};
