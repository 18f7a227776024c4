#pragma once

#include <deque>
#include <memory>
#include <string>
#include <unordered_map>

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

#include "host/cos/ObjectIndex.h"

namespace tgx::host {

/// The objects of one document that have been handed out, each under one 64-bit value for as long as the document is open.
/// An object is known by the address of qpdf's own object, which is stable for direct and indirect objects alike; its slot
/// keeps it alive, so the address is not reused.
class ObjectTable {
 public:
  struct Slot {
    QPDFObjectHandle object;
    std::unique_ptr<std::string> bytes;  ///< what CosStringValue handed out last
    ASUns32 parent;                      ///< the slot of the object that this one was first reached through, or kNoParent
  };
  static constexpr ASUns32 kNoParent = 0xFFFFFFFF;

  explicit ObjectTable(ASUns32 document) : document_(document) {}
  ObjectTable(const ObjectTable&) = delete;
  ObjectTable& operator=(const ObjectTable&) = delete;

  /// The handle of an object; the null object for everything that resolves to null.
  CosObj HandleOf(const QPDFObjectHandle& object) {
    const CosObj handle = Enter(object, kNoParent);
    Arrive(handle, 0);
    return handle;
  }

  /// The same for an entry or item of `parent`, an object of this table. Messages about a direct object name its place by
  /// it.
  CosObj HandleOf(const QPDFObjectHandle& object, CosObj parent) { return Enter(object, parent.a); }

  /// Lets the handle of an object, if it has one, stand for another object that takes its place in the document.
  void Renew(const QPDFObjectHandle& object, const QPDFObjectHandle& successor);

  /// The name object that stands for a key when entries are enumerated: one for each atom.
  CosObj KeyName(ASAtom key);

  /// Follows a client from containers into what they hold: `item` was read from `container`. Throws kASDamagedDocument where
  /// the way is longer than any sound document has it, so that a client that copies a value level by level comes to an end
  /// also where the value is part of itself. The way begins anew with each piece of work (see OutermostFrames), and where
  /// the client comes upon an object in another way.
  void FollowInto(CosObj container, CosObj item);

  /// The client has got `item` from a named entry of `container`, which it does not follow to any depth: whatever long way
  /// led to the item before, this one counts.
  void StepInto(CosObj container, CosObj item);

  /// The slot of a handle of this document, null for a value that was never given out.
  Slot* Find(CosObj handle) { return handle.a < slots_.size() ? &slots_[handle.a] : nullptr; }

 private:
  CosObj Enter(const QPDFObjectHandle& object, ASUns32 parent);
  int LevelOf(CosObj handle) const;
  void Arrive(CosObj handle, int level);

  ASUns32 document_;
  std::deque<Slot> slots_;
  ObjectIndex slotOfObject_;
  std::unordered_map<ASAtom, CosObj> keyNames_;
  std::unordered_map<ASUns32, int> levels_;  ///< how deep a client has come to the slots that it has read from others
  std::size_t levelsOf_ = 0;                 ///< the piece of work that the levels are of
};

constexpr CosObj kNullObject = {0, 0};
inline bool IsNull(CosObj handle) { return handle.a == 0 && handle.b == 0; }
inline bool Same(CosObj a, CosObj b) { return a.a == b.a && a.b == b.b; }

/// The living slot behind a handle. Throws kASBadParameter for the null object and for handles of closed documents.
ObjectTable::Slot& SlotOf(CosObj handle);
inline QPDFObjectHandle& ObjectOf(CosObj handle) { return SlotOf(handle).object; }

/// What messages call the object of a living handle: "object 57 0", "a direct object in object 57 0", "a direct object".
std::string Describe(CosObj handle);

}  // namespace tgx::host
