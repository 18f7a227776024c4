#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <tgx/host.h>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include "host/pdfedit/ImageData.h"
#include "host/pdfedit/model/ContentList.h"
#include "host/pdfedit/model/ContentState.h"
#include "host/pdfedit/model/CreatedText.h"
#include "host/pdfedit/model/PageResources.h"
#include "host/pdfedit/model/Properties.h"
#include "host/pdfedit/model/Records.h"
#include "host/pdfedit/model/TextEdits.h"
#include "host/pdfedit/model/TextLayout.h"

namespace tgx::host {

class Document;
class PageContents;

/// What an XObject is to the page that paints it.
struct PaintedXObject {
  QPDFObjectHandle stream;  ///< null when the resource is missing
  std::uint8_t type;        ///< kPDE...
};

/// What a client changed about a container, as it stands now and as it was last committed.
struct ContainerEdit {
  std::optional<std::string> tag;
  std::optional<std::string> committedTag;
  std::optional<std::string> committedProperties;  ///< the operand, as text
};

struct TextEdit {
  std::vector<EditedRun> runs;
  std::vector<EditedRun> committed;
  bool isCommitted = false;
};

/// Text that was added to a list, at its place in the content.
struct Addition {
  std::uint32_t offset;
  std::vector<EditedRun> runs;
};

/// The content of one page: its bytes, the elements over them, and what clients have changed. Nothing is ever moved in the
/// bytes; edits are notes beside them, from which the content is written anew.
class PageModel {
 public:
  /// Reads the page. Throws as ReadContentBytes does.
  PageModel(PageContents& contents, ASInt32 pageIndex);
  ~PageModel();
  PageModel(const PageModel&) = delete;
  PageModel& operator=(const PageModel&) = delete;

  PageContents& Contents() const { return contents_; }
  ASInt32 PageIndex() const { return pageIndex_; }
  const std::string& Bytes() const { return bytes_; }
  const QPDFObjectHandle& Dictionary() const { return dictionary_; }
  PageResources& Resources() { return resources_; }
  std::string Place() const;
  /// What "Contents" was when the page was read: a stream or an array of streams.
  const QPDFObjectHandle& Streams() const { return streams_; }
  /// Write or WriteOperators has put a stream into the page in the place of that.
  bool HasOwnStream() const { return stream_.isInitialized(); }
  /// The content is no longer that of the page: no edit of an object concerns it any more.
  void Detach() noexcept;

  // Elements and lists, by number.
  Element& At(std::uint32_t number) { return elements_[number]; }
  std::uint32_t Count() const { return elements_.Size(); }
  PDEObject HandleOf(std::uint32_t number) const { return elements_.Handle(number); }
  PDEObject ListHandle(std::uint32_t list) const { return lists_.Handle(list); }
  ContentList& List(std::uint32_t list) { return lists_[list]; }
  static std::uint32_t RootList() { return 0; }
  std::uint32_t ListOf(std::uint32_t container);
  PDEObject ItemAt(std::uint32_t list, ASInt32 index);
  CreatedText& AddedText(std::uint32_t item) { return *added_[item & ~ContentList::kAdded]; }
  /// Whether the element or the list's container is in the page, all the way up.
  bool IsAttached(std::uint32_t element);

  // What elements are.
  const PaintedXObject& XObjectOf(std::uint32_t number) { return xobjects_[At(number).detail]; }
  std::string TagOf(std::uint32_t container);
  /// The property dictionary; nothing when the container has none.
  Properties* PropertiesOf(std::uint32_t container);
  ImageData ImageOf(std::uint32_t number);
  /// The decoded samples of an image; kept until another's are asked for, or ForgetSamples.
  std::string& Samples(std::uint32_t number);
  void ForgetSamples() { samples_ = {}; }
  Box BoxOf(std::uint32_t number);
  /// The state in front of the operator that begins at `offset`, text position included.
  const ContentState& StateAt(std::uint32_t offset);
  const TextLayout& OriginalLayout(std::uint32_t text);
  const TextLayout& Layout(std::uint32_t text);
  /// The number of runs in the layout, which takes no layout to tell: clients count runs without looking at them.
  std::size_t RunCount(std::uint32_t text);

  // Marked content by identifier.
  PDEContainer ContainerOf(std::int32_t mcid);

  // Edits. Indices are checked.
  void Remove(std::uint32_t list, ASInt32 index);
  void Add(std::uint32_t list, ASInt32 afterIndex, CreatedText& text);
  void SetTag(std::uint32_t container, std::string tag);
  void ReplaceContent(std::uint32_t container, std::uint32_t list);
  std::vector<EditedRun>& EditText(std::uint32_t text);
  void TextChanged(std::uint32_t text);
  void AddedTextChanged(const CreatedText& text) { Touch(text.list); }
  /// A property dictionary was edited through the Cos operations.
  void PropertiesChanged(std::uint32_t properties);

  // Committing and writing.
  void Commit();
  bool IsEdited() const { return edited_; }
  bool IsWaiting() const { return waiting_; }
  /// Puts the committed content into the document.
  void Write();
  /// The same in two steps, for many pages at once: the content, and putting it there, deflated.
  std::string NewContent();
  void Put(std::shared_ptr<Buffer> deflated);
  /// Puts the content into the document as its operators alone, a line each, edited or not: a check of the reader.
  void WriteOperators();

  // For the writer: what is committed.
  const std::vector<std::uint32_t>& Gone() const { return gone_; }
  const std::map<std::uint32_t, ContainerEdit>& ContainerEdits() const { return containerEdits_; }
  const std::map<std::uint32_t, TextEdit>& TextEdits() const { return textEdits_; }
  const std::map<std::uint32_t, std::vector<Addition>>& Additions() const { return additions_; }

  ASInt32 acquired = 0;

 private:
  friend class TreeReader;

  std::uint32_t NewList(std::uint32_t owner);
  void CheckIndex(std::uint32_t list, ASInt32 index);
  void Touch(std::uint32_t list);
  void Edited();
  Box XObjectBox(std::uint32_t number);
  Box PathBox(std::uint32_t number);
  void RunTo(std::uint32_t offset);
  void BuildMcidIndex();
  void SetMcid(std::uint32_t container, std::int32_t mcid);
  void CommitProperties();
  void CommitProperties(std::uint32_t number);
  void CommitAdditions(std::uint32_t list);
  void NoteRemoval(std::uint32_t root);
  void NoteShortening(std::uint32_t text);
  std::uint32_t EndOf(std::uint32_t list);
  void PutStream(std::shared_ptr<Buffer> deflated);

  PageContents& contents_;
  ASInt32 pageIndex_;
  QPDFObjectHandle dictionary_;
  QPDFObjectHandle streams_;
  PageResources resources_;
  std::string bytes_;
  Slabs<Element> elements_;
  Slabs<ContentList> lists_;
  std::uint32_t operatorsEnd_ = 0;  ///< behind it stands what no operator takes, such as a string that the end cuts off
  std::vector<PaintedXObject> xobjects_;
  std::vector<Properties> properties_;
  std::vector<CreatedText*> added_;

  struct Checkpoint {
    std::uint32_t offset;
    ContentState state;
  };
  Checkpoint cursor_{0, {}};
  std::vector<Checkpoint> checkpoints_;

  struct CachedLayout {
    std::uint32_t text = kNone;
    std::unique_ptr<TextLayout> layout;
  };
  CachedLayout original_;
  CachedLayout editedLayout_;

  struct CachedSamples {
    std::uint32_t image = kNone;
    std::string bytes;
  };
  CachedSamples samples_;

  struct McidEntry {
    std::int32_t mcid;
    std::uint32_t container;
    bool operator<(const McidEntry& other) const {
      return mcid != other.mcid ? mcid < other.mcid : container < other.container;
    }
  };
  std::vector<McidEntry> mcids_;
  bool mcidsKnown_ = false;
  std::size_t staleMcids_ = 0;
  std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> usersOfShared_;  ///< of Properties that are resources

  bool detached_ = false;
  bool edited_ = false;       ///< at any time
  bool uncommitted_ = false;  ///< edits that no commit has taken
  bool waiting_ = false;      ///< committed edits that are not in the document yet
  std::uint64_t nestedEditsSeen_ = 0;
  std::vector<std::uint32_t> removed_;  ///< since the last commit
  std::vector<std::uint32_t> gone_;     ///< committed
  std::vector<std::uint32_t> touched_;  ///< lists with changed additions
  std::vector<std::uint32_t> editedTexts_;
  std::vector<std::uint32_t> editedTags_;
  std::vector<std::uint32_t> editedProperties_;
  std::map<std::uint32_t, ContainerEdit> containerEdits_;
  std::map<std::uint32_t, TextEdit> textEdits_;
  std::map<std::uint32_t, std::vector<Addition>> additions_;
  QPDFObjectHandle stream_;  ///< that Write has put into the page
};

}  // namespace tgx::host
