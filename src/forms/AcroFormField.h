#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "src/api/HostBinding.h"

namespace tgx::acroform {

/// Values of AcroFormField::Type.
enum class FieldType : std::int32_t { Unknown = 0, Button = 1, Text = 2, Choice = 3, Signature = 4 };

/// Where an entry stands: in the dictionary of the field, or in that of its widget annotation.
enum class Owner { Field, Widget };

/// A view of one form field and of its widget annotation. Entries are looked up on the object itself and never inherited.
///
/// A reader gives true and fills its output only when the entry is there with the expected type; else the output is empty.
/// A writer replaces the entry with a new direct object of the field's document, or with the object handed in; empty text
/// clears the entry. Without a widget, writers of its entries do nothing.
class AcroFormField {
 public:
  explicit AcroFormField(CosObj field);
  virtual ~AcroFormField() = default;

  CosObj Object() const { return field_; }
  CosObj Widget() const { return widget_; }

  /// From the field's own "FT": a kid without one is of unknown type.
  FieldType Type() const;
  /// The bytes of "T", empty without one.
  std::string Name() const;
  /// The items of "Kids" in order.
  std::vector<CosObj> Kids() const;

  bool ReadName(Owner owner, const char* key, std::string& text) const;
  bool ReadString(Owner owner, const char* key, std::string& bytes) const;
  bool ReadInteger(Owner owner, const char* key, std::int32_t& value) const;
  /// `cosType` is CosDict or CosArray.
  bool ReadObject(Owner owner, const char* key, std::int32_t cosType, CosObj& object) const;
  /// "V" and "DV": a name in a button field, a string in any other.
  bool ReadValue(const char* key, std::string& value) const;

  void WriteName(Owner owner, const char* key, const std::string& text);
  void WriteString(Owner owner, const char* key, const std::string& bytes);
  void WriteInteger(Owner owner, const char* key, std::int32_t value);
  void WriteObject(Owner owner, const char* key, CosObj object);

 private:
  CosObj DictionaryOf(Owner owner) const { return owner == Owner::Field ? field_ : widget_; }
  /// The entry, if it is there with this type; else the null object.
  CosObj Entry(Owner owner, const char* key, std::int32_t cosType) const;
  CosDoc Document() const;

  CosObj field_;
  CosObj widget_;  ///< null without one; a merged field without "Type" has none
};

/// Sets an entry of a dictionary; a value that stood there is taken out and destroyed first. No effect on anything else than
/// a dictionary.
void ReplaceEntry(CosObj dictionary, const char* key, CosObj value);

}  // namespace tgx::acroform
