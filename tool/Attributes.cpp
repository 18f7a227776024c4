#include "tool/Attributes.h"

#include <cmath>
#include <string_view>

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

using Json = nlohmann::ordered_json;

std::string StringOf(CosObj string) { return DecodeTextString(BytesOf(string)); }

std::string NameOf(CosObj name) { return DecodeName(ASAtomGetString(CosNameValue(name))); }

/// Turns the values of one element's attributes into JSON. Values can refer to each other in circles and fans, so depth and
/// number are bounded.
class Converter {
 public:
  explicit Converter(ReadingBudget& budget) : budget_(budget) {}

  Json Convert(CosObj value, int depth) {
    if (++values_ > kMaximalValues) return nullptr;
    budget_.SpendValues(1);
    switch (CosObjGetType(value)) {
      case CosInteger:
        return CosIntegerValue(value);
      case CosFixed:
        // Four decimals are what 16.16 holds; more would show the rounding.
        return std::round(CosFixedValue(value) / 65536.0 * 10000.0) / 10000.0;
      case CosBoolean:
        return CosBooleanValue(value) != 0;
      case CosName:
        return NameOf(value);
      case CosString:
        return Spent(StringOf(value));
      case CosArray:
        return ConvertArray(value, depth);
      case CosDict:
        return ConvertDict(value, depth);
      case CosStream:
        return ConvertDict(CosStreamDict(value), depth);
      default:
        return nullptr;
    }
  }

 private:
  static constexpr int kMaximalDepth = 4;
  static constexpr int kMaximalValues = 10000;

  Json ConvertArray(CosObj array, int depth) {
    Json result = Json::array();
    if (depth >= kMaximalDepth) return result;
    const ASInt32 length = CosArrayLength(array);
    for (ASInt32 i = 0; i < length && values_ < kMaximalValues; ++i)
      result.push_back(Convert(CosArrayGet(array, i), depth + 1));
    return result;
  }

  Json ConvertDict(CosObj dict, int depth) {
    Json result = Json::object();
    if (depth >= kMaximalDepth) return result;
    std::vector<std::pair<CosObj, CosObj>> entries;
    const auto add = [](CosObj key, CosObj value, void* data) -> ASBool {
      static_cast<std::vector<std::pair<CosObj, CosObj>>*>(data)->emplace_back(key, value);
      return 1;
    };
    CosObjEnum(dict, add, &entries);
    for (const auto& [key, value] : entries) {
      if (values_ >= kMaximalValues) break;
      result[NameOf(key)] = Convert(value, depth + 1);
    }
    return result;
  }

  std::string Spent(std::string text) {
    budget_.SpendBytes(text.size());
    return text;
  }

  ReadingBudget& budget_;
  int values_ = 0;
};

}  // namespace

void ReadingBudget::SpendValues(std::size_t count) {
  if (count > values_)
    throw HostFailure(kASDamagedDocument, "the structure tree holds more than 10,000,000 attribute values");
  values_ -= count;
}

void ReadingBudget::SpendBytes(std::size_t count) {
  if (count > bytes_) throw HostFailure(kASDamagedDocument, "the structure tree holds more than 256 MiB of texts");
  bytes_ -= count;
}

nlohmann::ordered_json ReadAttributes(CosObj attributes, ReadingBudget& budget) {
  Json result = Json::array();
  Converter converter(budget);
  const auto add = [&](CosObj value) {
    const ASInt32 type = CosObjGetType(value);
    if (type == CosDict || type == CosStream) result.push_back(converter.Convert(value, 0));
  };
  if (CosObjGetType(attributes) != CosArray) {
    add(attributes);
    return result;
  }
  const ASInt32 length = CosArrayLength(attributes);
  budget.SpendValues(static_cast<std::size_t>(length));
  for (ASInt32 i = 0; i < length; ++i) add(CosArrayGet(attributes, i));
  return result;
}

std::optional<std::string> StringEntry(CosObj dictionary, const char* key) {
  const CosObj value = CosDictGetKeyString(dictionary, key);
  if (CosObjGetType(value) != CosString) return std::nullopt;
  return StringOf(value);
}

}  // namespace tgx::tool
