// The part of PageModel that puts new content into the document.

#include <utility>

#include "host/pdfedit/PageContents.h"
#include "host/pdfedit/model/PageModel.h"
#include "host/pdfedit/writing/ContentWriter.h"
#include "host/pdfedit/writing/Deflater.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {

void PageModel::Write() {
  if (waiting_) Put(Deflate(NewContent()));
}

std::string PageModel::NewContent() { return ContentWriter(*this).Write(); }

void PageModel::Put(std::shared_ptr<Buffer> deflated) {
  PutStream(std::move(deflated));
  waiting_ = false;
}

void PageModel::WriteOperators() { PutStream(Deflate(ContentWriter(*this).WriteOperators())); }

/// The page gets a stream of its own, so that pages that share the former one keep it.
void PageModel::PutStream(std::shared_ptr<Buffer> deflated) {
  if (!stream_.isInitialized()) stream_ = contents_.InDocument().Pdf().newStream();
  stream_.replaceStreamData(std::move(deflated), QPDFObjectHandle::newName("/FlateDecode"), QPDFObjectHandle::newNull());
  dictionary_.replaceKey("/Contents", stream_);
  contents_.InDocument().MarkChanged();
}

}  // namespace tgx::host
