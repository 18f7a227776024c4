#pragma once

#include <string>

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

/// The value of an integer or a real, whatever the locale; 0 for anything else.
double NumberOf(const QPDFObjectHandle& object);

/// The shortest decimal that converts back to the same 16.16 value. Always has a point, so that it stays a real.
std::string RealText(ASFixed value);

/// The shortest decimal that gives the same float back, with a point and without an exponent. `value` is finite.
std::string RealText(float value);

}  // namespace tgx::host
