// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "LVXException.h"
#include "TLIException.h"

using namespace GenICam::Client;
using Lumivex::CLVXException;
using Lumivex::ScopedFunctionName;

namespace {

// ---------------------------------------------------------------------------------------------------------------------
// CLVXException
// ---------------------------------------------------------------------------------------------------------------------

TEST(LvxException, WhatReadsDescriptionFunctionFileLine) {
  const CLVXException failure("Something broke.", "GenICam::Client::GCGetInfo", "/build/source/TLIClient.cpp", 4711U);
  EXPECT_STREQ("Something broke. (function 'GenICam::Client::GCGetInfo()', file 'TLIClient.cpp', line 4711)",
               failure.what());
}

TEST(LvxException, KeepsItsPartsAsTheThrowerGaveThem) {
  const CLVXException failure("Something broke.", "GenICam::Client::GCGetInfo", "/build/source/TLIClient.cpp", 12U);
  EXPECT_EQ("Something broke.", failure.GetDescription());
  EXPECT_EQ("GenICam::Client::GCGetInfo", failure.GetSourceFunction());
  EXPECT_EQ("/build/source/TLIClient.cpp", failure.GetSourceFile()) << "the whole path stays; only what() cuts it";
  EXPECT_EQ(12U, failure.GetSourceLine());
}

struct FileRow {
  const char *path;
  const char *reduced;
};

class LvxExceptionFile : public testing::TestWithParam<FileRow> {};

TEST_P(LvxExceptionFile, IsReducedToItsLastComponent) {
  const CLVXException failure("m", "f", GetParam().path, 1U);
  EXPECT_EQ("m (function 'f()', file '" + std::string(GetParam().reduced) + "', line 1)", failure.what());
}

INSTANTIATE_TEST_SUITE_P(Paths, LvxExceptionFile,
                         testing::Values(FileRow{"TL.cpp", "TL.cpp"}, FileRow{"/a/b/TL.cpp", "TL.cpp"},
                                         FileRow{"c:\\a\\TL.cpp", "TL.cpp"}, FileRow{"c:\\a/b\\TL.cpp", "TL.cpp"},
                                         FileRow{"c:\\a\\b/TL.cpp", "TL.cpp"}, FileRow{"../TL.cpp", "TL.cpp"},
                                         FileRow{"/TL.cpp", "TL.cpp"}, FileRow{"a/", ""}, FileRow{"", ""}));

TEST(LvxException, BothFormsOfTheMessageReadAlike) {
  const CLVXException text("words", "f", "x.cpp", 3U);
  const CLVXException string(std::string("words"), "f", "x.cpp", 3U);
  EXPECT_STREQ(text.what(), string.what());
}

TEST(LvxException, LargestLineIsPrintedUnsigned) {
  const CLVXException failure("m", "f", "x.cpp", 0xFFFFFFFFU);
  EXPECT_STREQ("m (function 'f()', file 'x.cpp', line 4294967295)", failure.what());
}

TEST(LvxException, MessageOfAnyLengthSurvives) {
  const std::string message(1000, 'm');
  const CLVXException failure(message, "f", "x.cpp", 1U);
  EXPECT_EQ(message, failure.GetDescription());
  EXPECT_EQ(message + " (function 'f()', file 'x.cpp', line 1)", failure.what());
}

TEST(LvxException, CopyHasAllMembersAndOutlivesTheOriginal) {
  auto original = std::make_unique<unknown_error>("words", "Name::f", "/d/x.cpp", 3U);
  const std::string what = original->what();
  const unknown_error copy(*original);
  original.reset();
  EXPECT_EQ(what, copy.what());
  EXPECT_EQ("words", copy.GetDescription());
  EXPECT_EQ("Name::f", copy.GetSourceFunction());
  EXPECT_EQ("/d/x.cpp", copy.GetSourceFile());
  EXPECT_EQ(3U, copy.GetSourceLine());
}

TEST(LvxException, IsCaughtAsStdException) {
  try {
    throw io_error(std::string("words"), "f", "x.cpp", 3U);
  } catch (const std::exception &failure) {
    EXPECT_STREQ("words (function 'f()', file 'x.cpp', line 3)", failure.what());
    return;
  }
  FAIL();
}

// ---------------------------------------------------------------------------------------------------------------------
// The place of a throw
// ---------------------------------------------------------------------------------------------------------------------

unknown_error MakeHere() { return unknown_error("m", LVX_HERE); }

struct Thrower {
  static unknown_error Member() { return unknown_error("m", LVX_HERE); }
  const unknown_error Constant() const { return unknown_error("m", LVX_HERE); }
  template <class T>
  static unknown_error Typed(T) {
    return unknown_error("m", LVX_HERE);
  }
  static unknown_error InLambda() {
    return [](int) { return unknown_error("m", LVX_HERE); }(1);
  }
};

std::string NameIn(const CLVXException &failure) {
  const std::string what = failure.what();
  const size_t begin = what.find("(function '") + std::strlen("(function '");
  return what.substr(begin, what.find("()', file", begin) - begin);
}

/// The name without the rendering of the anonymous namespace, which is the compiler's.
std::string LastOf(const std::string &name) { return name.substr(name.rfind("::", name.rfind("::") - 1) + 2); }

TEST(LvxHere, NamesFunctionFileAndLine) {
  const int line = __LINE__ + 1;
  const unknown_error failure("m", LVX_HERE);
  EXPECT_EQ(static_cast<uint32_t>(line), failure.GetSourceLine());
  EXPECT_NE(std::string::npos, std::string(failure.what()).find("file 'Exception_test.cpp'")) << failure.what();
}

TEST(LvxHere, NameIsScopedAndWithoutTypes) {
  EXPECT_EQ("Thrower::Member", LastOf(NameIn(Thrower::Member())));
  EXPECT_EQ("Thrower::Constant", LastOf(NameIn(Thrower().Constant())));
  EXPECT_EQ("Thrower::InLambda", LastOf(NameIn(Thrower::InLambda()))) << "never operator()";
  const std::string free = NameIn(MakeHere());
  EXPECT_EQ("MakeHere", free.substr(free.rfind("::") + 2));
}

TEST(LvxHere, NameOfATemplateFunctionHasNoArguments) {
  EXPECT_EQ("Thrower::Typed", LastOf(NameIn(Thrower::Typed(1))));
  EXPECT_EQ("Thrower::Typed", LastOf(NameIn(Thrower::Typed(std::string()))));
}

struct SignatureRow {
  const char *signature;
  const char *name;
};

class ScopedName : public testing::TestWithParam<SignatureRow> {};

TEST_P(ScopedName, IsTakenFromTheSignature) { EXPECT_EQ(GetParam().name, ScopedFunctionName(GetParam().signature)); }

constexpr SignatureRow kSignatures[] = {
    {"GenICam::Client::GCGetInfo", "GenICam::Client::GCGetInfo"},
    {"f", "f"},
    {"", ""},
    {"void f()", "f"},
    {"int main(int, char**)", "main"},
    // GCC
    {"GenICam::Client::GC_ERROR GenICam::Client::GCInitLib()", "GenICam::Client::GCInitLib"},
    {"GenICam::Client::GCReadPort(GenICam::Client::PORT_HANDLE, uint64_t, void*, size_t*)::<lambda()>",
     "GenICam::Client::GCReadPort"},
    {"T* GenICam::Client::TypeCast(void*) [with T = GenICam::Client::CTL]", "GenICam::Client::TypeCast"},
    {"virtual void GenICam::Client::CTL::ReadData(uint64_t, void*, size_t*)", "GenICam::Client::CTL::ReadData"},
    {"std::string GenICam::Client::CTL::GetName() const", "GenICam::Client::CTL::GetName"},
    {"std::__cxx11::basic_string<char> GenICam::Client::Make(const std::__cxx11::basic_string<char>&)",
     "GenICam::Client::Make"},
    {"const GenICam::Client::RegisterEntry& GenICam::Client::CRegisterMap::GetRegisterEntry(uint64_t) const",
     "GenICam::Client::CRegisterMap::GetRegisterEntry"},
    {"GenICam::Client::CRegisterMap::CRegisterMap(uint64_t)", "GenICam::Client::CRegisterMap::CRegisterMap"},
    {"virtual GenICam::Client::CTL::~CTL()", "GenICam::Client::CTL::~CTL"},
    {"std::map<int, std::pair<long int, char> > Space::Table(int)", "Space::Table"},
    // Clang
    {"GC_ERROR GenICam::Client::GCInitLib()", "GenICam::Client::GCInitLib"},
    {"T *GenICam::Client::TypeCast(void *) [T = GenICam::Client::CTL]", "GenICam::Client::TypeCast"},
    {"const RegisterEntry &GenICam::Client::CRegisterMap::GetRegisterEntry(uint64_t) const",
     "GenICam::Client::CRegisterMap::GetRegisterEntry"},
    {"auto GenICam::Client::GCReadPort(PORT_HANDLE, uint64_t, void *, size_t *)::(anonymous class)::operator()() const",
     "GenICam::Client::GCReadPort"},
};

INSTANTIATE_TEST_SUITE_P(Signatures, ScopedName, testing::ValuesIn(kSignatures));

// ---------------------------------------------------------------------------------------------------------------------
// The 18 classes
// ---------------------------------------------------------------------------------------------------------------------

template <class Error>
constexpr bool kHasTextOrStringForm =
    std::is_constructible<Error, const char *, const char *, const char *, uint32_t>::value;
template <class Error>
constexpr bool kHasStringForm =
    std::is_constructible<Error, const std::string &, const char *, const char *, uint32_t>::value;

template <class Error>
class ErrorClass : public testing::Test {};
using AllErrors =
    testing::Types<dynamic_cast_error, unknown_error, outofrange_error, access_error, notinitialized_error,
                   notimplemented_error, resourceinuse_error, accessdenied_error, invalidhandle_error, invalidid_error,
                   nodata_error, invalidparameter_error, io_error, timeout_error, abort_error, invalidbuffer_error,
                   notavailable_error, invalidaddress_error>;
TYPED_TEST_SUITE(ErrorClass, AllErrors, );  // the last argument may be empty, but Clang wants its comma

TYPED_TEST(ErrorClass, AddsNothingToTheBase) {
  EXPECT_TRUE((std::is_base_of<CLVXException, TypeParam>::value));
  EXPECT_EQ(sizeof(CLVXException), sizeof(TypeParam));
  EXPECT_TRUE(std::is_copy_constructible<TypeParam>::value);
}

/// The classes are unrelated to one another: a handler of one must not catch another.
template <class Caught, template <class...> class List, class... Others>
constexpr int RelatedTo(const List<Others...> &) {
  return ((std::is_base_of<Caught, Others>::value ? 1 : 0) + ...);
}

TYPED_TEST(ErrorClass, IsRelatedToNoOther) { EXPECT_EQ(1, RelatedTo<TypeParam>(AllErrors())); }

template <class Error>
class ThrownErrorClass : public testing::Test {};
using ThrownErrors =
    testing::Types<dynamic_cast_error, unknown_error, outofrange_error, access_error, notinitialized_error,
                   notimplemented_error, resourceinuse_error, accessdenied_error, invalidhandle_error,
                   invalidparameter_error, io_error, timeout_error, abort_error, invalidbuffer_error>;
TYPED_TEST_SUITE(ThrownErrorClass, ThrownErrors, );

TYPED_TEST(ThrownErrorClass, CarriesMessageFunctionFileAndLine) {
  const TypeParam failure("words", "Space::f", "/d/x.cpp", 17U);
  EXPECT_STREQ("words (function 'Space::f()', file 'x.cpp', line 17)", failure.what());
  EXPECT_EQ("words", failure.GetDescription());
  EXPECT_EQ("/d/x.cpp", failure.GetSourceFile());
  EXPECT_EQ(17U, failure.GetSourceLine());
}

TEST(ErrorForms, TextOnlyClassesTakeNoString) {
  EXPECT_FALSE(kHasStringForm<dynamic_cast_error>);
  EXPECT_FALSE(kHasStringForm<notinitialized_error>);
  EXPECT_FALSE(kHasStringForm<accessdenied_error>);
  EXPECT_FALSE(kHasStringForm<abort_error>);
}

TEST(ErrorForms, StringClassesTakeAString) {
  EXPECT_TRUE(kHasStringForm<unknown_error>);
  EXPECT_TRUE(kHasStringForm<outofrange_error>);
  EXPECT_TRUE(kHasStringForm<access_error>);
  EXPECT_TRUE(kHasStringForm<notimplemented_error>);
  EXPECT_TRUE(kHasStringForm<resourceinuse_error>);
  EXPECT_TRUE(kHasStringForm<invalidhandle_error>);
  EXPECT_TRUE(kHasStringForm<invalidparameter_error>);
  EXPECT_TRUE(kHasStringForm<io_error>);
  EXPECT_TRUE(kHasStringForm<timeout_error>);
  EXPECT_TRUE(kHasStringForm<invalidbuffer_error>);
}

TEST(ErrorForms, ClassesThatNothingThrowsHaveNeitherForm) {
  EXPECT_FALSE(kHasTextOrStringForm<invalidid_error>);
  EXPECT_FALSE(kHasTextOrStringForm<nodata_error>);
  EXPECT_FALSE(kHasTextOrStringForm<notavailable_error>);
  EXPECT_FALSE(kHasTextOrStringForm<invalidaddress_error>);
}

// ---------------------------------------------------------------------------------------------------------------------
// FormatMessageText
// ---------------------------------------------------------------------------------------------------------------------

TEST(FormatMessageText, FormatsLikePrintf) {
  EXPECT_EQ("Child #-1 does not exist.", FormatMessageText("Child #%d does not exist.", -1));
  EXPECT_EQ("Interface 'GL-#1' is already opened.", FormatMessageText("Interface '%s' is already opened.", "GL-#1"));
  EXPECT_EQ("Invalid INTERFACE_INFO_CMD 0x000003E8", FormatMessageText("Invalid INTERFACE_INFO_CMD 0x%08X", 1000));
  EXPECT_EQ("Event ID -2 not implemented", FormatMessageText("Event ID %ld not implemented", -2L));
  EXPECT_EQ("plain", FormatMessageText("plain"));
  EXPECT_EQ("", FormatMessageText("%s", ""));
  EXPECT_EQ("100%", FormatMessageText("100%%"));
}

TEST(FormatMessageText, I64IsUnsigned64Bit) {
  EXPECT_EQ("18446744073709551615", FormatMessageText("%I64u", UINT64_MAX));
  EXPECT_EQ("FFFFFFFFFFFFFFFC", FormatMessageText("%I64X", UINT64_MAX - 3));
  EXPECT_EQ("Initial size is larger than possible: 0 < 461168601842738791 <= 461168601842738790",
            FormatMessageText("Initial size is larger than possible: 0 < %I64u <= %I64u", uint64_t{461168601842738791},
                              uint64_t{461168601842738790}));
}

TEST(FormatMessageText, ArgumentsKeepTheirTextEvenIfItLooksLikeAConversion) {
  EXPECT_EQ("a %I64u %d b", FormatMessageText("a %s b", "%I64u %d"));
}

class FormatMessageTextLength : public testing::TestWithParam<size_t> {};

TEST_P(FormatMessageTextLength, IsCutAt255) {
  const std::string argument(GetParam(), 'x');
  EXPECT_EQ(std::string(std::min<size_t>(GetParam(), 255), 'x'), FormatMessageText("%s", argument.c_str()));
}

INSTANTIATE_TEST_SUITE_P(Lengths, FormatMessageTextLength, testing::Values(0U, 1U, 254U, 255U, 256U, 257U, 5000U));

}  // namespace
