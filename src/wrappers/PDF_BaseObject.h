#pragma once

#include <utility>

namespace tgx {

/// The root of the wrappers: classes that show a document, its structure and its pages as trees of objects. A wrapper
/// belongs to its parent or to whoever made it; the way up is not owned.
class PDF_BaseObject {
 public:
  explicit PDF_BaseObject(PDF_BaseObject* parent = nullptr) : parent_(parent) {}
  PDF_BaseObject(const PDF_BaseObject&) = delete;
  PDF_BaseObject& operator=(const PDF_BaseObject&) = delete;
  virtual ~PDF_BaseObject() = default;

  /// -1 in every class: the classes are told apart by their run-time types.
  virtual int GetKind() const { return -1; }

  void SetParent(PDF_BaseObject* parent) { parent_ = parent; }
  PDF_BaseObject* GetParent() const { return parent_; }

 private:
  PDF_BaseObject* parent_;
};

/// The second base of the wrappers that stand for something of the host's. Holds the handle and counts nothing.
template <typename T>
class PDF_ObjectRef {
 public:
  explicit PDF_ObjectRef(T handle) : handle_(std::move(handle)) {}
  PDF_ObjectRef(const PDF_ObjectRef&) = delete;
  PDF_ObjectRef& operator=(const PDF_ObjectRef&) = delete;
  virtual ~PDF_ObjectRef() = default;

  const T& GetHandle() const { return handle_; }

 private:
  T handle_;
};

}  // namespace tgx
