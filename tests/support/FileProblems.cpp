#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include <gtest/gtest.h>
#include <qpdf/Pl_Discard.hh>
#include <qpdf/QPDFNumberTreeObjectHelper.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include "tests/support/Paths.h"
#include "tests/support/TreeText.h"

namespace tgx::test {
namespace {

std::string Place(const QPDFObjGen& id) { return id.unparse(' '); }

/// Who holds what in the structure tree.
class Holders {
 public:
  explicit Holders(const QPDFObjectHandle& root) {
    std::vector<QPDFObjectHandle> waiting;
    PushKids(root, waiting);
    while (!waiting.empty()) {
      QPDFObjectHandle element = waiting.back();
      waiting.pop_back();
      if (!elements.insert(element.getObjGen()).second) continue;
      VisitKids(element, waiting);
    }
  }

  std::map<QPDFObjGen, std::map<long long, std::set<QPDFObjGen>>> byPage;  // page, MCID
  std::map<QPDFObjGen, std::set<QPDFObjGen>> byObject;
  std::map<QPDFObjGen, QPDFObjectHandle> pages;
  std::map<QPDFObjGen, QPDFObjectHandle> objects;
  std::set<QPDFObjGen> elements;

 private:
  static std::vector<QPDFObjectHandle> Kids(QPDFObjectHandle element) {
    QPDFObjectHandle kids = element.getKey("/K");
    if (kids.isArray()) return kids.getArrayAsVector();
    return kids.isNull() ? std::vector<QPDFObjectHandle>() : std::vector<QPDFObjectHandle>{kids};
  }

  static bool IsElement(QPDFObjectHandle& kid) {
    return kid.isDictionary() && !kid.isDictionaryOfType("/MCR") && !kid.isDictionaryOfType("/OBJR");
  }

  static void PushKids(const QPDFObjectHandle& parent, std::vector<QPDFObjectHandle>& waiting) {
    for (QPDFObjectHandle& kid : Kids(parent)) {
      if (IsElement(kid)) waiting.push_back(kid);
    }
  }

  void VisitKids(QPDFObjectHandle element, std::vector<QPDFObjectHandle>& waiting) {
    const QPDFObjGen holder = element.getObjGen();
    for (QPDFObjectHandle& kid : Kids(element)) {
      QPDFObjectHandle page = element.getKey("/Pg");
      if (kid.isInteger()) {
        Hold(page, kid.getIntValue(), holder);
      } else if (kid.isDictionaryOfType("/MCR")) {
        if (kid.hasKey("/Stm")) continue;
        if (kid.getKey("/Pg").isDictionary()) page = kid.getKey("/Pg");
        Hold(page, kid.getKey("/MCID").getIntValue(), holder);
      } else if (kid.isDictionaryOfType("/OBJR")) {
        QPDFObjectHandle object = kid.getKey("/Obj");
        if (!object.isDictionary()) continue;
        byObject[object.getObjGen()].insert(holder);
        objects[object.getObjGen()] = object;
      } else if (IsElement(kid)) {
        waiting.push_back(kid);
      }
    }
  }

  void Hold(QPDFObjectHandle page, long long mcid, const QPDFObjGen& holder) {
    if (!page.isDictionary()) return;
    byPage[page.getObjGen()][mcid].insert(holder);
    pages[page.getObjGen()] = page;
  }
};

class ParentTreeCheck {
 public:
  ParentTreeCheck(QPDF& pdf, QPDFObjectHandle root) : holders_(root) {
    if (root.getKey("/ParentTree").isDictionary()) {
      for (auto& [key, value] : QPDFNumberTreeObjectHelper(root.getKey("/ParentTree"), pdf).getAsMap())
        entries_[key] = value;
    }
  }

  std::vector<std::string> Run() {
    for (auto& [page, byMcid] : holders_.byPage) CheckPage(holders_.pages.at(page), byMcid);
    for (auto& [object, owners] : holders_.byObject) CheckObject(holders_.objects.at(object), owners);
    for (auto& [key, value] : entries_) CheckTargets(key, value);
    return std::move(problems_);
  }

 private:
  void CheckPage(QPDFObjectHandle page, const std::map<long long, std::set<QPDFObjGen>>& byMcid) {
    QPDFObjectHandle key = page.getKey("/StructParents");
    QPDFObjectHandle list = key.isInteger() ? Entry(key.getIntValue()) : QPDFObjectHandle::newNull();
    if (!list.isArray()) return Report("page " + Place(page.getObjGen()) + " has no list in the parent tree");
    for (const auto& [mcid, owners] : byMcid) {
      const bool inside = mcid >= 0 && mcid < list.getArrayNItems();
      const QPDFObjGen found = inside ? list.getArrayItem(static_cast<int>(mcid)).getObjGen() : QPDFObjGen();
      if (owners.count(found) == 0) {
        Report("MCID " + std::to_string(mcid) + " of page " + Place(page.getObjGen()) + " leads to " + Place(found) +
               " and is held by " + Place(*owners.begin()));
      }
    }
  }

  void CheckObject(QPDFObjectHandle object, const std::set<QPDFObjGen>& owners) {
    QPDFObjectHandle key = object.getKey("/StructParent");
    const QPDFObjGen found = key.isInteger() ? Entry(key.getIntValue()).getObjGen() : QPDFObjGen();
    if (owners.count(found) == 0) {
      Report("object " + Place(object.getObjGen()) + " leads to " + Place(found) + " and is held by " +
             Place(*owners.begin()));
    }
  }

  void CheckTargets(long long key, QPDFObjectHandle value) {
    if (value.isArray()) {
      for (const QPDFObjectHandle& item : value.getArrayAsVector()) CheckTarget(key, item);
    } else {
      CheckTarget(key, value);
    }
  }

  void CheckTarget(long long key, QPDFObjectHandle target) {
    if (target.isDictionary() && holders_.elements.count(target.getObjGen()) == 0) {
      Report("parent tree entry " + std::to_string(key) + " leads to " + Place(target.getObjGen()) +
             ", which is not in the tree");
    }
  }

  QPDFObjectHandle Entry(long long key) {
    const auto known = entries_.find(key);
    return known == entries_.end() ? QPDFObjectHandle::newNull() : known->second;
  }

  void Report(std::string problem) { problems_.push_back(std::move(problem)); }

  Holders holders_;
  std::map<long long, QPDFObjectHandle> entries_;
  std::vector<std::string> problems_;
};

class DiscardContent : public QPDFObjectHandle::ParserCallbacks {
 public:
  void handleObject(QPDFObjectHandle, std::size_t, std::size_t) override {}
  void handleEOF() override {}
};

std::string Joined(const std::vector<std::string>& lines) {
  std::string out;
  for (const std::string& line : lines) out += "\n  " + line;
  return out;
}

std::string Contents(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

std::vector<std::string> ParentTreeProblems(QPDF& pdf) {
  QPDFObjectHandle root = pdf.getRoot().getKey("/StructTreeRoot");
  if (!root.isDictionary()) return {};
  return ParentTreeCheck(pdf, root).Run();
}

std::vector<std::string> FileProblems(const std::string& bytes) {
  std::vector<std::string> problems;
  try {
    ReadBack file(bytes);
    Pl_Discard discard;
    QPDFWriter writer(file.Pdf());
    writer.setOutputPipeline(&discard);
    writer.setDecodeLevel(qpdf_dl_all);
    writer.write();
    DiscardContent callbacks;
    for (auto& page : QPDFPageDocumentHelper(file.Pdf()).getAllPages()) page.parseContents(&callbacks);
    for (const QPDFExc& warning : file->getWarnings()) problems.emplace_back(warning.what());
  } catch (const std::exception& e) {
    problems.emplace_back(e.what());
  }
  return problems;
}

void ExpectSound(const std::string& bytes) {
  const std::vector<std::string> inFile = FileProblems(bytes);
  EXPECT_TRUE(inFile.empty()) << Joined(inFile);
  ReadBack file(bytes);
  const std::vector<std::string> inParentTree = ParentTreeProblems(file.Pdf());
  EXPECT_TRUE(inParentTree.empty()) << Joined(inParentTree);
}

void ExpectGolden(const std::string& name, const std::string& text) {
  const std::string path = SourcePath("tests/golden/" + name + ".txt");
  const char* update = std::getenv("UPDATE");
  if (update != nullptr && std::string(update) == "1") {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return;
  }
  EXPECT_EQ(text, Contents(path)) << "reference file tests/golden/" << name << ".txt; UPDATE=1 writes it anew";
}

}  // namespace tgx::test
