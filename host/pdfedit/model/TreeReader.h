#pragma once

#include <cstdint>
#include <vector>

#include "host/pdfedit/model/PageModel.h"

namespace tgx::host {

/// Builds the elements of a page in one pass over its operators.
class TreeReader {
 public:
  explicit TreeReader(PageModel& page) : page_(page), content_(page.bytes_) {}

  void Read();

 private:
  void ReadOperator(const ContentReader& op);
  void BeginContainer(const ContentReader& op);
  void EndContainer(const ContentReader& op);
  void AddText(const ContentReader& op);
  void AddPath(const ContentReader& op);
  void AddXObject(const ContentReader& op);
  std::uint32_t Add(std::uint8_t type, std::size_t begin, std::size_t end, std::uint32_t detail = kNone);
  std::uint32_t XObjectOfName(std::string_view nameToken);
  std::uint32_t SharedProperties(std::string_view nameToken);

  PageModel& page_;
  std::string_view content_;
  std::vector<std::uint32_t> open_;  ///< containers, outermost first
  std::uint32_t tooDeep_ = 0;        ///< open ones that are no elements
  std::uint32_t text_ = kNone;       ///< the text that the next show belongs to
  std::size_t path_ = kNoPath;       ///< where the path under construction begins
  std::size_t lastEnd_ = 0;          ///< of the last element, or of the last bracket of a container
  TextMap<std::uint32_t> xobjects_;
  TextMap<std::uint32_t> properties_;

  static constexpr std::size_t kNoPath = static_cast<std::size_t>(-1);
};

}  // namespace tgx::host
