#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

/// The streams that clients have made in a document, and where they put them. A client that copies values from another
/// document makes a stream for each reference that it meets: equal data are kept once here, and SharedStreams writes them
/// once.
class NewStreams {
 public:
  /// Where a new stream was put: an entry of a dictionary, or an item of an array.
  struct Place {
    QPDFObjectHandle container;
    std::string key;  ///< as qpdf has it; empty in an array
    int index;        ///< in an array, as it was then
  };

  struct NewStream {
    QPDFObjectHandle stream;
    const Buffer* data;  ///< the same for equal bytes; nothing changes the data of a stream that a client made
    std::vector<Place> places;
  };

  /// The bytes as the data of a stream.
  std::shared_ptr<Buffer> DataOf(std::string_view bytes);

  /// The data that new streams have in common with these bytes, null if there are none.
  std::shared_ptr<Buffer> FindData(std::string_view bytes) const;

  /// Takes note of a new stream, and of new streams among the entries of its dictionary.
  void Add(const QPDFObjectHandle& stream, const std::shared_ptr<Buffer>& data);

  /// A client has put a value into a dictionary, under a plain key, or into an array.
  void AfterPut(const QPDFObjectHandle& dictionary, std::string_view key, const QPDFObjectHandle& value);
  void AfterPut(const QPDFObjectHandle& array, int index, const QPDFObjectHandle& value);

  const std::vector<NewStream>& Streams() const { return streams_; }
  bool IsNew(const QPDFObjectHandle& stream) const { return numbers_.count(stream.getObjectPtr()) != 0; }

 private:
  void AddPlace(const QPDFObjectHandle& value, Place place);

  std::vector<NewStream> streams_;  ///< as they were made, those in the dictionary of another before that
  std::unordered_map<const QPDFObject*, std::size_t> numbers_;          ///< indices of streams_
  std::unordered_multimap<std::size_t, std::shared_ptr<Buffer>> data_;  ///< by the hash of the bytes
};

}  // namespace tgx::host
