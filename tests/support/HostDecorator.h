#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include <tgx/host.h>

namespace tgx::test {

/// A number for every operation of the host, in table order.
enum class Operation : int {
#define TGX_OPERATION(family, result, name, parameters, arguments) name,
#include <tgx/operations/all.def>
#undef TGX_OPERATION
  kCount
};

const char* NameOf(Operation operation);
/// Whether the host promises never to raise in it for live handles. Destructors of the library call some of these.
bool NeverRaises(Operation operation);

/// One call of a host operation, as a decorator sees it.
struct HostCall {
  static constexpr std::size_t kMostArguments = 12;

  Operation operation;
  std::size_t count = 0;                               ///< of arguments
  std::array<std::uint64_t, kMostArguments> values{};  ///< their bits: handles, numbers, pointers
  std::uint64_t result = 0;                            ///< set when the call has returned

  bool Is(Operation other) const { return operation == other; }
  const char* Name() const { return NameOf(operation); }
  /// The arguments as text, "(12:1, \"Alt\", 3)": handles of objects as slot and document, atoms and zero-terminated texts
  /// quoted, pointers as "null" or "pointer".
  std::string ArgumentText(const HostTables& tables) const;
};

/// Raises as the host does: the top exception frame is taken off and its procedure called.
[[noreturn]] void RaiseAsHost(ASErrorCode code, const std::string& text);

/// Tables that let a decorator see each call and pass it on to the tables that it wraps. Decorators of different classes
/// nest; of one class (`Self`) there is at most one at a time.
///
///     class MyHost : public HostDecorator<MyHost> { ... void Before(const HostCall& call) override ... };
///     MyHost host(EmbeddedTables());
///     HostSession session(host.Tables());
template <typename Self>
class HostDecorator {
 public:
  explicit HostDecorator(const HostTables* inner) : inner_(inner) { active_ = this; }
  virtual ~HostDecorator() { active_ = nullptr; }
  HostDecorator(const HostDecorator&) = delete;
  HostDecorator& operator=(const HostDecorator&) = delete;

  const HostTables* Tables() const;
  const HostTables& Inner() const { return *inner_; }

 protected:
  /// Before the wrapped tables see the call; may raise.
  virtual void Before(const HostCall& call) { (void)call; }
  /// After the call has returned; not when it raised.
  virtual void After(const HostCall& call) { (void)call; }

 private:
  template <typename T>
  static std::uint64_t Bits(const T& value) {
    constexpr std::size_t kSize = sizeof(T);  // NOLINT(bugprone-sizeof-expression): of pointers too
    static_assert(kSize <= sizeof(std::uint64_t));
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, kSize);
    return bits;
  }

  template <typename... Args>
  static HostCall Describe(Operation operation, const std::tuple<Args...>& arguments) {
    static_assert(sizeof...(Args) <= HostCall::kMostArguments);
    HostCall call;
    call.operation = operation;
    std::apply([&call](const auto&... argument) { ((call.values[call.count++] = Bits(argument)), ...); }, arguments);
    return call;
  }

  template <typename Work>
  static std::invoke_result_t<Work> Forward(HostCall call, const Work& work) {
    active_->Before(call);
    if constexpr (std::is_void_v<std::invoke_result_t<Work>>) {
      work();
      active_->After(call);
    } else {
      const auto result = work();
      call.result = Bits(result);
      active_->After(call);
      return result;
    }
  }

  struct Entries {
#define TGX_OPERATION(family, result, name, parameters, arguments)             \
  static result name parameters {                                              \
    return Forward(Describe(Operation::name, std::forward_as_tuple arguments), \
                   [&] { return active_->inner_->family->name arguments; });   \
  }
#include <tgx/operations/all.def>
#undef TGX_OPERATION
  };

  static inline HostDecorator* active_ = nullptr;
  const HostTables* inner_;
};

template <typename Self>
const HostTables* HostDecorator<Self>::Tables() const {
#define TGX_OPERATION(family, result, name, parameters, arguments) Entries::name,
  static constexpr CoreTable kCore = {
      sizeof(CoreTable),
      kHostTablesVersion,
#include <tgx/operations/core.def>
  };
  static constexpr AcroSupportTable kAcroSupport = {
      sizeof(AcroSupportTable),
      kHostTablesVersion,
#include <tgx/operations/acro_support.def>
  };
  static constexpr CosTable kCos = {
      sizeof(CosTable),
      kHostTablesVersion,
#include <tgx/operations/cos.def>
  };
  static constexpr PDModelTable kPDModel = {
      sizeof(PDModelTable),
      kHostTablesVersion,
#include <tgx/operations/pd_model.def>
  };
  static constexpr PDFEditReadTable kPDFEditRead = {
      sizeof(PDFEditReadTable),
      kHostTablesVersion,
#include <tgx/operations/pdf_edit_read.def>
  };
  static constexpr PDFEditWriteTable kPDFEditWrite = {
      sizeof(PDFEditWriteTable),
      kHostTablesVersion,
#include <tgx/operations/pdf_edit_write.def>
  };
  static constexpr PagePDEContentTable kPagePDEContent = {
      sizeof(PagePDEContentTable),
      kHostTablesVersion,
#include <tgx/operations/page_pde_content.def>
  };
  static constexpr PDSEditReadTable kPDSEditRead = {
      sizeof(PDSEditReadTable),
      kHostTablesVersion,
#include <tgx/operations/pds_edit_read.def>
  };
  static constexpr PDSEditWriteTable kPDSEditWrite = {
      sizeof(PDSEditWriteTable),
      kHostTablesVersion,
#include <tgx/operations/pds_edit_write.def>
  };
  static constexpr TextTable kText = {
      sizeof(TextTable),
      kHostTablesVersion,
#include <tgx/operations/text.def>
  };
#undef TGX_OPERATION
  static constexpr HostTables kTables = {
      sizeof(HostTables), kHostTablesVersion, &kCore,           &kAcroSupport,  &kCos,         &kPDModel,
      &kPDFEditRead,      &kPDFEditWrite,     &kPagePDEContent, &kPDSEditWrite, &kPDSEditRead, &kText,
  };
  return &kTables;
}

}  // namespace tgx::test
