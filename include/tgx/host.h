/* The host interface: the types, records and operations through which libtgx works on PDF documents, and the function tables
 * that carry the operations. Whoever embeds the library fills these tables from a PDF library; the embedded host
 * (embedded_host.h) is one such filling.
 *
 * Plain C, usable from C++. The operations are listed once, in operations/NAME.def, a file a family:
 *
 *     TGX_OPERATION(family, result, name, parameters, arguments)
 *
 * The tables below, the library's forwarders and every decorator are generated from that list.
 *
 * Conventions, unless an operation says otherwise:
 *  - Failure is a raise: the host stores a code and a text, takes the top exception frame off and calls its restore
 * procedure, which throws. A handle that names no living object of an open document raises kASBadParameter, an object of the
 * wrong type kASWrongType, an index out of range kASOutOfRange.
 *  - Output pointers may be null when the caller does not want the value, and are written only on success; an operation that
 *    returns an ASBool and gives 0 sets its object outputs to the null object.
 *  - A getter of bytes returns their number; with a buffer it also writes exactly that many, without a terminator.
 *  - Bytes that are handed in are copied before the call returns.
 *  - Coordinates are in the user space of the page, in 1/72 inch, as 16.16 fixed-point numbers. */
#ifndef TGX_HOST_H
#define TGX_HOST_H

#include <stddef.h>
#include <stdint.h>

/* ---- Scalars ------------------------------------------------------------------------------------------------------------
 */

typedef int8_t ASInt8;
typedef uint8_t ASUns8;
typedef int16_t ASInt16;
typedef uint16_t ASUns16;
typedef int32_t ASInt32;
typedef uint32_t ASUns32;
typedef ASInt32 ASBool;       /* exactly 0 or 1 */
typedef ASInt32 ASFixed;      /* signed 16.16 */
typedef ASInt32 ASAtom;       /* an interned name, 0 and up; 0 is the empty text, ASAtomNull is no name */
typedef ASInt32 ASErrorCode;  /* one of the kAS... codes below */
typedef ASInt32 ASTArraySize; /* a count of bytes or items */
typedef ASUns16 ASUTF16Val;   /* a UTF-16 code unit */

/* ---- Handles ------------------------------------------------------------------------------------------------------------
 */

/* A 64-bit value that names an object of an open document; all bits zero is the null object. Two ways to one object give the
 * same bits for as long as the document is open. All of these are one type: the Cos object of a structure element is a valid
 * PDSElement, and so on. */
typedef struct OPAQUE_64_BITS {
  ASUns32 a, b;
} OPAQUE_64_BITS;
typedef OPAQUE_64_BITS CosObj;
typedef OPAQUE_64_BITS PDSElement;
typedef OPAQUE_64_BITS PDSTreeRoot;
typedef OPAQUE_64_BITS PDSRoleMap;
typedef OPAQUE_64_BITS PDAnnot;
typedef OPAQUE_64_BITS PDLinkAnnot;
typedef OPAQUE_64_BITS PDAction;
typedef OPAQUE_64_BITS PDViewDestination;

/* NOLINTBEGIN(bugprone-reserved-identifier): names that bridges to a PDF library expect */
typedef struct _t_CosDoc* CosDoc;
typedef struct _t_PDDoc* PDDoc;
typedef struct _t_PDPage* PDPage;

/* Page content. A list, a container, a text element and so on are one pointer type, told apart by PDEObjectGetType and
 * compared by pointer. */
typedef struct _t_PDEElement* PDEObject;
typedef PDEObject PDEElement;
typedef PDEObject PDEContent;
typedef PDEObject PDEContainer;
typedef PDEObject PDEGroup;
typedef PDEObject PDEText;
typedef PDEObject PDEImage;
typedef PDEObject PDSMC;
typedef PDEObject PDEFont;
typedef PDEObject PDEColorSpace;
typedef PDEObject PDEExtGState;

typedef struct _t_ASExtension* ASExtension; /* a client's identity; 8 bytes of any value */
typedef struct _t_ASText* ASText;
typedef struct _t_ASStm* ASStm;
typedef struct _t_ASFileSys* ASFileSys;
typedef struct _t_ASPathName* ASPathName;
/* NOLINTEND(bugprone-reserved-identifier) */
typedef void* ASCallback;

typedef void (*ASRestoreProc)(void); /* does not return: it throws */
typedef ASBool (*CosObjEnumProc)(CosObj key, CosObj value, void* clientData);
typedef ASBool (*PDAuthProc)(PDDoc doc);

/* ---- Records ------------------------------------------------------------------------------------------------------------
 */

typedef struct ASFixedRect {
  ASFixed left, top, right, bottom;
} ASFixedRect;

typedef struct ASFixedMatrix {
  ASFixed a, b, c, d, h, v;
} ASFixedMatrix;

/* Where a marked-content kid of a structure element points. */
typedef struct PDSMCInfo {
  ASUns32 size;       /*  0: 40 */
  ASUns32 flags;      /*  4: 0 */
  ASInt32 mcid;       /*  8: marked-content identifier, -1 if none */
  ASUns32 reserved;   /* 12 */
  CosObj stream;      /* 16: "Stm" of a marked-content reference, else null */
  CosObj streamOwner; /* 24: its "StmOwn", else null */
  CosObj page;        /* 32: the page's dictionary, or null */
} PDSMCInfo;

typedef struct PDEImageAttrs {
  ASUns32 flags;            /*  0: kPDEImage... bits */
  ASInt32 width;            /*  4: samples */
  ASInt32 height;           /*  8: samples */
  ASInt32 bitsPerComponent; /* 12 */
  ASFixed decode[8];        /* 16 */
  ASAtom intent;            /* 48: rendering intent, ASAtomNull if none */
} PDEImageAttrs;

typedef struct PDEColorValue {
  ASFixed color[7];    /*  0: one component after the other */
  PDEObject colorObj2; /* 32 */
  PDEObject colorObj;  /* 40: a pattern */
} PDEColorValue;

typedef struct PDEColorSpec {
  PDEColorSpace space; /* 0 */
  PDEColorValue value; /* 8 */
} PDEColorSpec;

typedef struct PDEDash {
  ASInt32 dashLen;    /* 0: how many of `dashes` count */
  ASFixed dashPhase;  /* 4 */
  ASFixed dashes[11]; /* 8 */
} PDEDash;

typedef struct PDEGraphicState {
  ASUns32 wasSetFlags;          /*   0: not consulted */
  PDEColorSpec fillColorSpec;   /*   8 */
  PDEColorSpec strokeColorSpec; /* 64 */
  PDEDash dash;                 /* 120 */
  ASFixed lineWidth;            /* 172 */
  ASFixed miterLimit;           /* 176 */
  ASFixed flatness;             /* 180 */
  ASInt32 lineCap;              /* 184 */
  ASInt32 lineJoin;             /* 188 */
  ASAtom renderIntent;          /* 192: the empty atom is none */
  PDEExtGState extGState;       /* 200 */
  ASUns8 reserved[24];          /* 208 */
} PDEGraphicState;

typedef struct PDLinkAnnotBorder {
  ASFixed hCornerRadius; /*  0 */
  ASFixed vCornerRadius; /*  4 */
  ASFixed width;         /*  8 */
  ASInt32 dashArrayLen;  /* 12: 0 to 4 */
  ASFixed dashArray[4];  /* 16 */
} PDLinkAnnotBorder;

typedef struct PDColorValueRec {
  ASInt32 space;    /* 0 */
  ASFixed value[4]; /* 4 */
} PDColorValueRec;

#ifdef __cplusplus
static_assert(sizeof(OPAQUE_64_BITS) == 8 && alignof(OPAQUE_64_BITS) == 4);
static_assert(sizeof(ASFixedRect) == 16 && offsetof(ASFixedRect, bottom) == 12);
static_assert(sizeof(ASFixedMatrix) == 24);
static_assert(sizeof(PDSMCInfo) == 40 && offsetof(PDSMCInfo, mcid) == 8 && offsetof(PDSMCInfo, stream) == 16 &&
              offsetof(PDSMCInfo, streamOwner) == 24 && offsetof(PDSMCInfo, page) == 32);
static_assert(sizeof(PDEImageAttrs) == 52 && offsetof(PDEImageAttrs, width) == 4 && offsetof(PDEImageAttrs, height) == 8 &&
              offsetof(PDEImageAttrs, bitsPerComponent) == 12 && offsetof(PDEImageAttrs, decode) == 16 &&
              offsetof(PDEImageAttrs, intent) == 48);
static_assert(sizeof(PDEColorValue) == 48 && sizeof(PDEColorSpec) == 56 && sizeof(PDEDash) == 52);
static_assert(sizeof(PDEGraphicState) == 232 && offsetof(PDEGraphicState, fillColorSpec) == 8 &&
              offsetof(PDEGraphicState, strokeColorSpec) == 64 && offsetof(PDEGraphicState, dash) == 120 &&
              offsetof(PDEGraphicState, lineWidth) == 172 && offsetof(PDEGraphicState, miterLimit) == 176 &&
              offsetof(PDEGraphicState, flatness) == 180 && offsetof(PDEGraphicState, lineCap) == 184 &&
              offsetof(PDEGraphicState, lineJoin) == 188 && offsetof(PDEGraphicState, renderIntent) == 192 &&
              offsetof(PDEGraphicState, extGState) == 200 && offsetof(PDEGraphicState, reserved) == 208);
static_assert(sizeof(PDLinkAnnotBorder) == 32 && offsetof(PDLinkAnnotBorder, width) == 8 &&
              offsetof(PDLinkAnnotBorder, dashArrayLen) == 12 && offsetof(PDLinkAnnotBorder, dashArray) == 16);
static_assert(sizeof(PDColorValueRec) == 20 && offsetof(PDColorValueRec, value) == 4);
#endif

/* ---- Constants ----------------------------------------------------------------------------------------------------------
 */

enum { ASAtomNull = -1 };

/* Codes of a raise. */
enum {
  kASNoError = 0,
  kASBadParameter =
      1,             /* a dead handle, null where null is not allowed, a wrong record size, an object of another document */
  kASWrongType = 2,  /* an object of another type than the operation works on */
  kASOutOfRange = 3, /* an index */
  kASNotFound = 4,   /* the named thing is not there */
  kASDamagedDocument = 5, /* the document contradicts itself */
  kASBadPassword = 6,     /* a password is needed, or the one given is wrong */
  kASFileError = 7,       /* the operating system refused */
  kASNotSupported = 8,    /* valid, and not supported */
  kASNoMemory = 9,
  kASInternalError = 10 /* a fault of the host itself */
};

/* Cos object types. */
enum {
  CosNull = 0,
  CosInteger = 1,
  CosFixed = 2, /* every real number */
  CosBoolean = 3,
  CosName = 4,
  CosString = 5,
  CosDict = 6,
  CosArray = 7,
  CosStream = 8
};

/* Modes of CosStreamOpenStm. */
enum { cosOpenRaw = 0, cosOpenUnfiltered = 1, cosOpenFiltered = 2 };

/* Places of insertion: after the kid, element or annotation at an index, or one of these. */
enum {
  kPDSBeforeFirst = -1,
  kPDSAfterLast = 0x7FFFFFFE,
  kPDEBeforeFirst = -1,
  kPDEAfterLast = 0x7FFFFFFE,
  kPDAnnotBeforeFirst = -1,
  kPDAnnotAfterLast = -2
};

/* What the index of a text operation counts. */
enum { kPDETextRun = 1, kPDETextChar = 2 };

/* Kinds of page content, as PDEObjectGetType gives them. */
enum {
  kPDEContent = 0,
  kPDEText = 1,
  kPDEPath = 2,
  kPDEImage = 3,
  kPDEForm = 4,
  kPDEPS = 5,
  kPDEXObject = 6,
  kPDEClip = 7,
  kPDEFont = 8,
  kPDEColorSpace = 9,
  kPDEExtGState = 10,
  kPDEPlace = 11,
  kPDEContainer = 12,
  kPDEShading = 16,
  kPDEGroup = 17,
  kPDEUnknown = 18
};

/* A bit of PDEFontGetCreateNeedFlags: the font has no ToUnicode map. */
enum { kPDEFontCreateToUnicode = 0x20000 };

/* PDEImageAttrs.flags */
enum {
  kPDEImageExternal = 1, /* an XObject, not an inline image */
  kPDEImageIsMask = 2,
  kPDEImageInterpolate = 4,
  kPDEImageHaveDecode = 8
};

/* Formats of the text family. */
enum { kUTF16BigEndian = 0, kUTF16HostEndian = 1, kUTF8 = 2 };

/* ---- Tables -------------------------------------------------------------------------------------------------------------
 */

/* A table starts with its own size in bytes, so that it can grow at the end, and a version; its functions follow in the
 * order of the family's list. No entry is ever null. */
/* NOLINTNEXTLINE(bugprone-macro-parentheses): the arguments are declarations, not expressions */
#define TGX_OPERATION(family, result, name, parameters, arguments) result(*name) parameters;
#define TGX_TABLE_HEAD ASUns32 size, version;
typedef struct CoreTable {
  TGX_TABLE_HEAD
#include "operations/core.def"
} CoreTable;
typedef struct AcroSupportTable {
  TGX_TABLE_HEAD
#include "operations/acro_support.def"
} AcroSupportTable;
typedef struct CosTable {
  TGX_TABLE_HEAD
#include "operations/cos.def"
} CosTable;
typedef struct PDModelTable {
  TGX_TABLE_HEAD
#include "operations/pd_model.def"
} PDModelTable;
typedef struct PDFEditReadTable {
  TGX_TABLE_HEAD
#include "operations/pdf_edit_read.def"
} PDFEditReadTable;
typedef struct PDFEditWriteTable {
  TGX_TABLE_HEAD
#include "operations/pdf_edit_write.def"
} PDFEditWriteTable;
typedef struct PagePDEContentTable {
  TGX_TABLE_HEAD
#include "operations/page_pde_content.def"
} PagePDEContentTable;
typedef struct PDSEditReadTable {
  TGX_TABLE_HEAD
#include "operations/pds_edit_read.def"
} PDSEditReadTable;
typedef struct PDSEditWriteTable {
  TGX_TABLE_HEAD
#include "operations/pds_edit_write.def"
} PDSEditWriteTable;
typedef struct TextTable {
  TGX_TABLE_HEAD
#include "operations/text.def"
} TextTable;
#undef TGX_TABLE_HEAD
#undef TGX_OPERATION

enum { kHostTablesVersion = 1 };

/* The bundle of all tables; the host owns it and gives the same one on every call. */
typedef struct HostTables {
  ASUns32 size, version; /* sizeof(HostTables), kHostTablesVersion */
  const CoreTable* core;
  const AcroSupportTable* acroSupport;
  const CosTable* cos;
  const PDModelTable* pdModel;
  const PDFEditReadTable* pdfEditRead;
  const PDFEditWriteTable* pdfEditWrite;
  const PagePDEContentTable* pagePDEContent;
  const PDSEditWriteTable* pdsEditWrite;
  const PDSEditReadTable* pdsEditRead;
  const TextTable* text;
} HostTables;

#endif /* TGX_HOST_H */

/* ---- Forwarders ---------------------------------------------------------------------------------------------------------
 */

/* C++ code that calls a host through its tables defines TGX_HOST_FORWARDERS before including this header and provides
 * GetHostTables; it can then call every operation by its own name, and each call fetches the table anew. */
#if defined(TGX_HOST_FORWARDERS) && defined(__cplusplus) && !defined(TGX_HOST_FORWARDERS_DEFINED)
#define TGX_HOST_FORWARDERS_DEFINED
const HostTables* GetHostTables();
#define TGX_OPERATION(family, result, name, parameters, arguments) \
  inline result name parameters { return GetHostTables()->family->name arguments; }
#include "operations/all.def"
#undef TGX_OPERATION
#endif
