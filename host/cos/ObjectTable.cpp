#include "host/cos/ObjectTable.h"

#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/core/Raise.h"
#include "host/cos/CosAccess.h"
#include "host/cos/Names.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {
namespace {

std::string DescribeIndirect(const QPDFObjectHandle& object) {
  return "object " + std::to_string(object.getObjectID()) + " " + std::to_string(object.getGeneration());
}

}  // namespace

CosObj ObjectTable::Enter(const QPDFObjectHandle& object, ASUns32 parent) {
  QPDFObjectHandle resolved = object;
  if (!resolved.isInitialized() || resolved.isNull()) return kNullObject;
  if (const ASUns32 known = slotOfObject_.Find(resolved); known != ObjectIndex::kNone) return {known, document_};
  // The slot comes first: should the index find no memory, a slot without a name does no harm.
  const auto slot = static_cast<ASUns32>(slots_.size());
  slots_.push_back({resolved, nullptr, parent});
  slotOfObject_.Enter(resolved, slot);
  return {slot, document_};
}

void ObjectTable::Renew(const QPDFObjectHandle& object, const QPDFObjectHandle& successor) {
  const ASUns32 slot = slotOfObject_.Find(object);
  if (slot == ObjectIndex::kNone) return;
  // A successor that has a handle of its own keeps it.
  if (slotOfObject_.Find(successor) == ObjectIndex::kNone) slotOfObject_.Enter(successor, slot);
  slotOfObject_.Remove(object);
  slots_[slot].object = successor;
}

CosObj ObjectTable::KeyName(ASAtom key) {
  const auto [known, isNew] = keyNames_.try_emplace(key, kNullObject);
  if (isNew) known->second = HandleOf(QPDFObjectHandle::newName(ToQpdfName(AtomView(key))));
  return known->second;
}

void ObjectTable::FollowInto(CosObj container, CosObj item) {
  constexpr int kDeepest = 500;
  if (FrameDepth() == 0 || IsNull(item)) return;
  const int type = CosTypeOf(ObjectOf(item));
  if (type != CosArray && type != CosDict && type != CosStream) return;
  if (levelsOf_ != OutermostFrames()) {
    levels_.clear();
    levelsOf_ = OutermostFrames();
  }
  const int level = LevelOf(container) + 1;
  if (level > kDeepest) {
    throw HostError(kASDamagedDocument, Describe(item) + ": nested deeper than " + std::to_string(kDeepest) + " levels");
  }
  levels_[item.a] = level;
}

void ObjectTable::StepInto(CosObj container, CosObj item) {
  if (!levels_.empty()) Arrive(item, LevelOf(container) + 1);
}

int ObjectTable::LevelOf(CosObj handle) const {
  const auto known = levels_.find(handle.a);
  return known == levels_.end() ? 0 : known->second;
}

/// Few pieces of work follow anything, so few have levels to look up.
void ObjectTable::Arrive(CosObj handle, int level) {
  if (levels_.empty() || IsNull(handle)) return;
  const auto known = levels_.find(handle.a);
  if (known != levels_.end() && known->second > level) known->second = level;
}

ObjectTable::Slot& SlotOf(CosObj handle) { return Document::ObjectOf(handle).slot; }

std::string Describe(CosObj handle) {
  ObjectTable::Slot* slot = &SlotOf(handle);
  if (slot->object.isIndirect()) return DescribeIndirect(slot->object);
  // A parent had its slot before its child, so the way up ends.
  while (slot->parent != ObjectTable::kNoParent) {
    slot = &SlotOf({slot->parent, handle.b});
    if (slot->object.isIndirect()) return "a direct object in " + DescribeIndirect(slot->object);
  }
  return "a direct object";
}

}  // namespace tgx::host
