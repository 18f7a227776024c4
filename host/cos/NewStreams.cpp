#include "host/cos/NewStreams.h"

#include <cstring>

#include "host/cos/Names.h"

namespace tgx::host {
namespace {

std::size_t HashOf(std::string_view bytes) { return std::hash<std::string_view>()(bytes); }

}  // namespace

std::shared_ptr<Buffer> NewStreams::FindData(std::string_view bytes) const {
  const auto [first, last] = data_.equal_range(HashOf(bytes));
  for (auto known = first; known != last; ++known) {
    Buffer& data = *known->second;
    if (std::string_view(reinterpret_cast<const char*>(data.getBuffer()), data.getSize()) == bytes) return known->second;
  }
  return nullptr;
}

std::shared_ptr<Buffer> NewStreams::DataOf(std::string_view bytes) {
  if (auto known = FindData(bytes)) return known;
  auto data = std::make_shared<Buffer>(bytes.size());
  if (!bytes.empty()) std::memcpy(data->getBuffer(), bytes.data(), bytes.size());
  data_.emplace(HashOf(bytes), data);
  return data;
}

void NewStreams::Add(const QPDFObjectHandle& stream, const std::shared_ptr<Buffer>& data) {
  numbers_.emplace(stream.getObjectPtr(), streams_.size());
  streams_.push_back({stream, data.get(), {}});
  QPDFObjectHandle dictionary = QPDFObjectHandle(stream).getDict();
  for (auto& [key, value] : dictionary.getDictAsMap()) AddPlace(value, {dictionary, key, 0});
}

void NewStreams::AfterPut(const QPDFObjectHandle& dictionary, std::string_view key, const QPDFObjectHandle& value) {
  if (!streams_.empty() && IsNew(value)) AddPlace(value, {dictionary, ToQpdfName(key), 0});
}

void NewStreams::AfterPut(const QPDFObjectHandle& array, int index, const QPDFObjectHandle& value) {
  if (!streams_.empty()) AddPlace(value, {array, {}, index});
}

void NewStreams::AddPlace(const QPDFObjectHandle& value, Place place) {
  const auto number = numbers_.find(value.getObjectPtr());
  if (number != numbers_.end()) streams_[number->second].places.push_back(std::move(place));
}

}  // namespace tgx::host
