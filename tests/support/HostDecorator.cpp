#include "tests/support/HostDecorator.h"

#include <vector>

#include "host/core/Raise.h"

namespace tgx::test {
namespace {

constexpr const char* kNames[] = {
#define TGX_OPERATION(family, result, name, parameters, arguments) #name,
#include <tgx/operations/all.def>
#undef TGX_OPERATION
};

/// The declared parameters, "(CosObj dict, ASAtom key)": what the bits alone do not tell.
constexpr std::string_view kParameters[] = {
#define TGX_OPERATION(family, result, name, parameters, arguments) #parameters,
#include <tgx/operations/all.def>
#undef TGX_OPERATION
};

std::vector<std::string_view> ParametersOf(Operation operation) {
  std::string_view text = kParameters[static_cast<int>(operation)];
  text = text.substr(1, text.size() - 2);
  std::vector<std::string_view> parameters;
  while (!text.empty()) {
    const std::size_t comma = text.find(',');
    parameters.push_back(text.substr(0, comma));
    text = comma == std::string_view::npos ? "" : text.substr(comma + 2);
  }
  return parameters;
}

bool StartsWithOneOf(std::string_view text, std::initializer_list<std::string_view> starts) {
  for (const std::string_view start : starts) {
    if (text.substr(0, start.size()) == start) return true;
  }
  return false;
}

std::string ValueText(std::string_view parameter, std::uint64_t bits, const HostTables& tables) {
  if (parameter == "const char* text" || parameter == "const char* key") {
    const auto* text = reinterpret_cast<const char*>(bits);  // NOLINT(performance-no-int-to-ptr): the bits are a pointer's
    return text == nullptr ? "null" : "\"" + std::string(text) + "\"";
  }
  if (parameter.find('*') != std::string_view::npos) return bits == 0 ? "null" : "pointer";
  if (StartsWithOneOf(parameter, {"ASAtom "})) {
    const auto atom = static_cast<ASAtom>(bits);
    return atom < 0 ? std::to_string(atom) : "\"" + std::string(tables.core->ASAtomGetString(atom)) + "\"";
  }
  if (StartsWithOneOf(parameter, {"CosObj ", "PDSElement ", "PDSTreeRoot ", "PDSRoleMap ", "PDAnnot ", "PDLinkAnnot ",
                                  "PDAction ", "PDViewDestination "})) {
    return std::to_string(bits & 0xFFFFFFFFU) + ":" + std::to_string(bits >> 32);
  }
  if (StartsWithOneOf(parameter, {"ASInt32 ", "ASUns32 ", "ASBool ", "ASTArraySize ", "ASErrorCode ", "ASFixed "})) {
    return std::to_string(static_cast<std::int32_t>(bits));
  }
  return bits == 0 ? "null" : "handle";
}

}  // namespace

const char* NameOf(Operation operation) { return kNames[static_cast<int>(operation)]; }

bool NeverRaises(Operation operation) {
  switch (operation) {
    case Operation::ASPopExceptionFrame:
    case Operation::ASGetExceptionErrorCode:
    case Operation::ASGetErrorString:
    case Operation::ASCallbackDestroy:
    case Operation::ASfree:
    case Operation::ASTextDestroy:
    case Operation::CosNewNull:
    case Operation::CosObjEqual:
    case Operation::CosObjDestroy:
    case Operation::PDDocRelease:
    case Operation::ASStmClose:
    case Operation::PDPageRelease:
    case Operation::PDERelease:
    case Operation::PDPageReleasePDEContent:
    case Operation::PDPageSetPDEContent:
      return true;
    default:
      return false;
  }
}

std::string HostCall::ArgumentText(const HostTables& tables) const {
  const std::vector<std::string_view> parameters = ParametersOf(operation);
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += (i == 0 ? "" : ", ") + ValueText(parameters[i], values[i], tables);
  return "(" + text + ")";
}

void RaiseAsHost(ASErrorCode code, const std::string& text) { host::Raise(host::HostError(code, text)); }

}  // namespace tgx::test
