#include "host/pdfedit/StreamData.h"

#include <gtest/gtest.h>

#include <qpdf/QPDF.hh>

namespace tgx::host {
namespace {

TEST(StreamData, UnfilteredStreamsAreDecoded) {
  QPDF file;
  file.emptyPDF();
  const StreamData data = DecodeStream(file.newStream("some bytes"), 100);
  EXPECT_EQ(data.bytes, "some bytes");
  EXPECT_TRUE(data.isDecoded);
  EXPECT_FALSE(data.isTruncated);
}

TEST(StreamData, StopsAtTheLimit) {
  QPDF file;
  file.emptyPDF();
  const StreamData data = DecodeStream(file.newStream("some bytes"), 4);
  EXPECT_EQ(data.bytes, "some");
  EXPECT_TRUE(data.isTruncated);
}

TEST(StreamData, TellsWhatIsStillEncoded) {
  QPDF file;
  file.emptyPDF();
  QPDFObjectHandle stream = file.newStream("626364>");
  stream.getDict().replaceKey("/Filter", QPDFObjectHandle::parse("[/ASCIIHexDecode /JBIG2Decode]"));
  const StreamData data = DecodeStream(stream, 100);
  EXPECT_EQ(data.bytes, "bcd");
  EXPECT_FALSE(data.isDecoded);
}

TEST(StreamData, WhatIsNoStreamIsEmpty) { EXPECT_EQ(DecodeStream(QPDFObjectHandle::newNull(), 100).bytes, ""); }

TEST(StreamData, BytesHaveTheFiltersOfTheDictionary) {
  EXPECT_EQ(DecodeBytes("626364>", QPDFObjectHandle::parse("<</Filter /ASCIIHexDecode>>"), 100).bytes, "bcd");
  EXPECT_EQ(DecodeBytes("626364>", QPDFObjectHandle::parse("<<>>"), 100).bytes, "626364>");
}

}  // namespace
}  // namespace tgx::host
