// The part of PageModel that puts new content into the document.

#include <qpdf/Buffer.hh>
#include <qpdf/Pl_Buffer.hh>
#include <qpdf/Pl_Flate.hh>

#include "host/pdfedit/PageContents.h"
#include "host/pdfedit/model/PageModel.h"
#include "host/pdfedit/writing/ContentWriter.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {

void PageModel::Write() {
  if (!waiting_) return;
  PutContent(ContentWriter(*this).Write());
  waiting_ = false;
}

void PageModel::WriteOperators() { PutContent(ContentWriter(*this).WriteOperators()); }

/// The page gets a stream of its own, so that pages that share the former one keep it.
void PageModel::PutContent(const std::string& content) {
  Pl_Buffer compressed("content");
  Pl_Flate deflate("deflate", &compressed, Pl_Flate::a_deflate);
  deflate.write(reinterpret_cast<const unsigned char*>(content.data()), content.size());
  deflate.finish();
  if (!stream_.isInitialized()) stream_ = contents_.InDocument().Pdf().newStream();
  stream_.replaceStreamData(compressed.getBufferSharedPointer(), QPDFObjectHandle::newName("/FlateDecode"),
                            QPDFObjectHandle::newNull());
  dictionary_.replaceKey("/Contents", stream_);
  contents_.InDocument().MarkChanged();
}

}  // namespace tgx::host
