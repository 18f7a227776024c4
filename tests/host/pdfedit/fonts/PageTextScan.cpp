#include "tests/host/pdfedit/fonts/PageTextScan.h"

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <qpdf/QPDFAnnotationObjectHelper.hh>
#include <qpdf/QPDFMatrix.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QUtil.hh>

namespace tgx::host {
namespace {

struct State {
  QPDFMatrix ctm;
  std::shared_ptr<const Font> font;
  double size = 0;
  double charSpacing = 0;
  double wordSpacing = 0;
  double scale = 1;
  double leading = 0;
  double rise = 0;
};

std::u16string ToUtf16(const std::string& utf8) {
  const std::string bytes = QUtil::utf8_to_utf16(utf8).substr(2);
  std::u16string text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    text.push_back(
        static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) << 8 | static_cast<unsigned char>(bytes[i + 1])));
  }
  return text;
}

using Fonts = std::map<QPDFObjGen, std::shared_ptr<const Font>>;

class Scanner : public QPDFObjectHandle::ParserCallbacks {
 public:
  Scanner(QPDFObjectHandle resources, State state, Fonts& fonts, int depth, PageTextVisitor& visitor)
      : resources_(resources), state_(std::move(state)), fonts_(fonts), depth_(depth), visitor_(visitor) {}

  void handleObject(QPDFObjectHandle object) override {
    if (!object.isOperator()) {
      operands_.push_back(object);
      return;
    }
    Handle(object.getOperatorValue());
    operands_.clear();
  }
  void handleEOF() override {}

 private:
  double Number(std::size_t index) {
    return index < operands_.size() && operands_[index].isNumber() ? operands_[index].getNumericValue() : 0;
  }
  QPDFMatrix Matrix() { return {Number(0), Number(1), Number(2), Number(3), Number(4), Number(5)}; }

  void Handle(const std::string& name) {
    if (name == "q") saved_.push_back(state_);
    if (name == "Q" && !saved_.empty()) {
      state_ = saved_.back();
      saved_.pop_back();
    }
    if (name == "cm") state_.ctm.concat(Matrix());
    if (name == "BT") line_ = text_ = QPDFMatrix();
    if (name == "Tc") state_.charSpacing = Number(0);
    if (name == "Tw") state_.wordSpacing = Number(0);
    if (name == "Tz") state_.scale = Number(0) / 100;
    if (name == "TL") state_.leading = Number(0);
    if (name == "Ts") state_.rise = Number(0);
    if (name == "Tm") line_ = text_ = Matrix();
    if (name == "TD") state_.leading = -Number(1);
    if (name == "Td" || name == "TD") NextLine(Number(0), Number(1));
    if (name == "T*" || name == "'" || name == "\"") NextLine(0, -state_.leading);
    if (name == "Tf" && operands_.size() >= 2) SetFont(operands_[0].getName(), Number(1));
    if (name == "\"") {
      state_.wordSpacing = Number(0);
      state_.charSpacing = Number(1);
    }
    if (name == "Tj" || name == "'" || name == "\"") Show(operands_.back());
    if (name == "TJ" && operands_[0].isArray()) {
      for (auto& item : operands_[0].aitems()) {
        if (item.isNumber()) {
          Move(-item.getNumericValue() / 1000 * state_.size);
        } else {
          Show(item);
        }
      }
    }
    if (name == "BMC" || name == "BDC") BeginMark();
    if (name == "EMC" && !marks_.empty()) EndMark();
    if (name == "gs") SetFontOf(resources_.getKeyIfDict("/ExtGState").getKeyIfDict(operands_[0].getName()));
    if (name == "Do") Enter(resources_.getKeyIfDict("/XObject").getKeyIfDict(operands_[0].getName()));
  }

  void BeginMark() {
    if (operands_.empty()) operands_.push_back(QPDFObjectHandle::newNull());
    QPDFObjectHandle properties = operands_.size() < 2 ? QPDFObjectHandle::newNull() : operands_[1];
    if (properties.isName()) properties = resources_.getKeyIfDict("/Properties").getKeyIfDict(properties.getName());
    QPDFObjectHandle text = properties.getKeyIfDict("/ActualText");
    const bool counts = operands_[0].isNameAndEquals("/Span") && text.isString();  // readers honour it on a Span alone
    marks_.push_back(counts ? std::optional(ToUtf16(text.getUTF8Value())) : std::nullopt);
    if (counts && actualTexts_++ == 0) hasShown_ = false;
  }
  void EndMark() {
    const std::optional<std::u16string> text = marks_.back();
    marks_.pop_back();
    if (text && --actualTexts_ == 0 && hasShown_) visitor_.OnActualText(*text);
  }

  void NextLine(double x, double y) {
    line_.concat(QPDFMatrix(1, 0, 0, 1, x, y));
    text_ = line_;
  }

  void SetFont(const std::string& name, double size) {
    Use(resources_.getKeyIfDict("/Font").getKeyIfDict(name));
    state_.size = size;
  }
  void SetFontOf(QPDFObjectHandle graphicsState) {
    QPDFObjectHandle entry = graphicsState.getKeyIfDict("/Font");
    if (!entry.isArray()) return;
    Use(entry.getArrayItem(0));
    state_.size = entry.getArrayItem(1).getNumericValue();
  }
  void Use(QPDFObjectHandle dictionary) {
    std::shared_ptr<const Font>& font = fonts_[dictionary.getObjGen()];
    if (font == nullptr || !dictionary.isIndirect()) font = Font::Read(dictionary);
    state_.font = font;
  }

  void Show(QPDFObjectHandle string) {
    if (!string.isString() || state_.font == nullptr) return;
    const std::string bytes = string.getStringValue();
    for (std::string_view left = bytes; !left.empty();) {
      const Font::Code code = state_.font->NextCode(left);
      left.remove_prefix(static_cast<std::size_t>(code.length));
      QPDFMatrix glyph = state_.ctm;
      glyph.concat(text_);
      double x = 0;
      double y = 0;
      glyph.transform(0, state_.rise, x, y);
      const double width = state_.font->Width(code) * state_.size * state_.scale * glyph.a;
      visitor_.OnCode({state_.font.get(), code, x, y, width, glyph.b == 0 && glyph.c == 0, actualTexts_ > 0});
      hasShown_ = true;
      const double spacing = state_.charSpacing + (Font::IsSpace(code) ? state_.wordSpacing : 0);
      Move(state_.font->Advance(code) * state_.size + spacing);
    }
  }

  void Move(double distance) {
    const bool isVertical = state_.font != nullptr && state_.font->IsVertical();
    text_.concat(isVertical ? QPDFMatrix(1, 0, 0, 1, 0, distance) : QPDFMatrix(1, 0, 0, 1, distance * state_.scale, 0));
  }

  void Enter(QPDFObjectHandle form) {
    if (!form.isStream() || !form.getDict().getKey("/Subtype").isNameAndEquals("/Form") || depth_ > 8) return;
    State inner = state_;
    if (form.getDict().getKey("/Matrix").isMatrix())
      inner.ctm.concat(QPDFMatrix(form.getDict().getKey("/Matrix").getArrayAsMatrix()));
    QPDFObjectHandle own = form.getDict().getKey("/Resources");
    Scanner scanner(own.isDictionary() ? own : resources_, inner, fonts_, depth_ + 1, visitor_);
    QPDFObjectHandle::parseContentStream(form, &scanner);
  }

  QPDFObjectHandle resources_;
  State state_;
  Fonts& fonts_;
  int depth_;
  PageTextVisitor& visitor_;
  std::vector<std::optional<std::u16string>> marks_;
  int actualTexts_ = 0;
  bool hasShown_ = false;
  std::vector<State> saved_;
  std::vector<QPDFObjectHandle> operands_;
  QPDFMatrix line_;
  QPDFMatrix text_;
};

}  // namespace

void ScanPageText(QPDFObjectHandle page, PageTextVisitor& visitor) {
  constexpr int kInvisible = 0x22;  // hidden, or not for viewing
  Fonts fonts;
  QPDFPageObjectHelper helper(page);
  Scanner scanner(helper.getAttribute("/Resources", false), {}, fonts, 0, visitor);
  helper.parseContents(&scanner);
  for (QPDFAnnotationObjectHelper& annotation : helper.getAnnotations()) {
    QPDFObjectHandle form = annotation.getAppearanceStream("/N");
    if (!form.isStream() || (annotation.getFlags() & kInvisible) != 0) continue;
    const QPDFObjectHandle::Rectangle place = annotation.getRect();
    State state;
    state.ctm = QPDFMatrix(1, 0, 0, 1, place.llx, place.lly);
    Scanner appearance(form.getDict().getKey("/Resources"), state, fonts, 1, visitor);
    QPDFObjectHandle::parseContentStream(form, &appearance);
  }
}

std::u16string PageText(QPDFObjectHandle page) {
  class Collector : public PageTextVisitor {
   public:
    void OnCode(const ShownCode& shown) override {
      if (!shown.hasActualText) shown.font->AppendUnicode(shown.code, text);
    }
    void OnActualText(const std::u16string& actual) override { text += actual; }
    std::u16string text;
  } collector;
  ScanPageText(page, collector);
  return collector.text;
}

}  // namespace tgx::host
