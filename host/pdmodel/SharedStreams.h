#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include "host/cos/NewStreams.h"

namespace tgx::host {

class Document;

/// Has equal streams written once, for as long as it lives: where a client put a stream of its own, the first stream with
/// the same dictionary and the same data stands instead, be it the file's or another that a client made. Fonts and images
/// are what this saves. A form XObject stays one of its own, since programs that fill in forms rewrite appearances in place.
///
/// Afterwards everything is as it was: clients find the objects that they made.
class SharedStreams {
 public:
  explicit SharedStreams(Document& document);
  ~SharedStreams();
  SharedStreams(const SharedStreams&) = delete;
  SharedStreams& operator=(const SharedStreams&) = delete;

 private:
  struct Replaced {
    NewStreams::Place place;
    QPDFObjectHandle stream;
  };
  using Streams = std::vector<const NewStreams::NewStream*>;
  using FirstOfDictionary = std::unordered_map<std::string, QPDFObjectHandle>;

  void FindInFile(Document& document, const Streams& streams);
  void Replace(const NewStreams::NewStream& newStream, const QPDFObjectHandle& first);

  std::unordered_map<const Buffer*, FirstOfDictionary> firsts_;
  std::vector<Replaced> replaced_;
};

}  // namespace tgx::host
