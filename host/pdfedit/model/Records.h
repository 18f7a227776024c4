#pragma once

#include <cstdint>

#include "host/pdfedit/model/Slabs.h"

namespace tgx::host {

class CreatedText;

constexpr std::uint32_t kNone = 0xFFFFFFFFU;

/// A stretch of operators of a page: a container with everything in it, or one thing that is painted. Elements are numbered
/// in the order in which they stand in the content, a container before what it contains.
struct Element {
  enum Flag : std::uint8_t {
    kRemoved = 1,             ///< no longer in its list
    kGone = 2,                ///< the same, and committed
    kClosed = 4,              ///< container: has its EMC
    kSharedDictionary = 8,    ///< container: the property dictionary is a resource
    kWithoutDictionary = 16,  ///< container: BMC, a missing resource, an operand that is no dictionary
    kInPath = 32,             ///< a path was begun before this element, or before the part of it that this one is
  };
  std::uint8_t type;  ///< kPDE...
  std::uint8_t flags;
  std::uint16_t unused;
  std::uint32_t begin;       ///< of the first operator's first operand
  std::uint32_t end;         ///< behind the last operator
  std::uint32_t parent;      ///< the container, kNone at the top
  std::uint32_t next;        ///< the first element that is not inside this one
  std::uint32_t detail;      ///< container: its list, kNone until it is asked for; Do: its XObject
  std::int32_t mcid;         ///< container: -1 for none
  std::uint32_t dictionary;  ///< container: its Properties entry; kNone for an inline one that nobody has asked for

  bool Is(Flag flag) const { return (flags & flag) != 0; }
};
static_assert(sizeof(Element) == kRecordSize);

/// A text element that a client made.
struct TextRecord {
  CreatedText* text;  ///< null once it has been freed
  char unused[kRecordSize - sizeof(void*)];
};

struct ColorSpaceRecord {
  std::int32_t components;
  char unused[kRecordSize - sizeof(std::int32_t)];
};

}  // namespace tgx::host
