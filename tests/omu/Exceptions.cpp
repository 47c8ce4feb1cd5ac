#include "ExceptionChecks.h"
#include "ExceptionClasses.h"
#include "uti_ResourceManager.h"

namespace
{

using Attribute = omu_AttributeErrorException;
using BreName = omu_BreNameErrorException;
using Range = omu_RangeErrorException;

using Message = std::pair<std::unique_ptr<nex_Exception>, const char*>;

/// A copy of what is caught when the exception propagates: had either lost its class, its message would differ.
template <class E> Message Row(const E& exception, const char* text)
{
    try {
        exception.Propagate();
    } catch (const E& caught) {
        EXPECT_EQ(typeid(caught), typeid(E));
        return {std::unique_ptr<nex_Exception>(caught.Copy()), text};
    }
    return {};
}

} // namespace

// Those that test_objects.py raises are not shown here again.
TEST(Exceptions, Messages)
{
    const int lowest = std::numeric_limits<int>::min();
    const Message rows[] = {
        Row(omu_GenericTypeErrorException(), "illegal argument type for built-in operation"),
        Row(omu_ArgTypeErrorException(1, "int", "string", "setValues"), "setValues[0]; found string, expecting int"),
        Row(omu_ArgTypeErrorException(3, "int", "string", ""), "arg3; found string, expecting int"),
        Row(omu_ArgTypeErrorException(lowest, "", "", "f"), "f[-2147483649]; found , expecting "),
        Row(omu_ArgTypeErrorException(1, "%1$s", "%2$s", ""), "arg1; found %2$s, expecting %1$s"),
        Row(omu_KeywordTypeErrorException("name", "string", "int", "Part"),
            "Part['name']; found int, expecting string"),
        Row(omu_KeywordTypeErrorException("name", "string", "int", ""), "name; found int, expecting string"),
        Row(omu_ArgNumberErrorException(2, 3, "setValues"), "setValues; too many arguments; expected 2, got 3"),
        Row(omu_ArgNumberErrorException(2, 2, ""), "not all required arguments specified; expected 2, got 2"),
        Row(omu_KeywordErrorException("%s", "setValues"), "setValueskeyword error on %s"),
        Row(omu_KeywordErrorException("size", ""), "keyword error on size"),
        Row(Attribute(Attribute::READ_ONLY, "x"), "x is read-only"),
        Row(Attribute(Attribute::MESSAGE, "no %s"), "no %s"),
        Row(Attribute(Attribute::KindEnm{3}, "x"), "Error message not implemented yet"),
        Row(BreName(BreName::INVALID), "invalid name"),
        Row(BreName(BreName::INVALID_JOB), "invalid job name"),
        Row(BreName(BreName::INVALID_MODEL), "invalid model name"),
        Row(BreName(BreName::KindEnm{7}), ""),
        Row(omu_ValueErrorException("50% of %s"), "50% of %s"),
        Row(Range("r", 0.0, omu_NOT_INCLUSIVE, 0.1, omu_INCLUSIVE), "r must be a Float in the range: 0.0 < r <= 0.1"),
        Row(Range("n", 0, omu_NOT_INCLUSIVE, 1, omu_NO_RANGE), "n must be an Integer > 0"),
        Row(Range("n", -3, omu_INCLUSIVE, 1, omu_NO_RANGE), "n must be an Integer >= -3"),
        Row(Range("r", 0.0, omu_NO_RANGE, 5.0, omu_INCLUSIVE), "r must be a Float <= 5.0"),
        Row(Range("r", 0.0, omu_NO_RANGE, 1e20, omu_NOT_INCLUSIVE), "r must be a Float < 1e+20"),
    };
    for (const auto& [exception, text] : rows) {
        EXPECT_EQ(dynamic_cast<const nex_CommandException&>(*exception).JournalMessage(), text);
        EXPECT_STREQ(exception->what(), text);
    }
    EXPECT_EQ(omu_GenericTypeErrorException().PythonType(), "TypeError");
}

TEST(Exceptions, A_range_reads_back_its_limits_and_one_without_any_is_an_assertion)
{
    RecordedAssertions assertions;
    EXPECT_EQ(Range("n", 1, omu_NO_RANGE, 2, omu_NO_RANGE).JournalMessage(), "n must be an Integer ");
    EXPECT_EQ(Range().JournalMessage(), " must be ");
    const std::string condition = "m_LowerLimitQualifier != omu_NO_RANGE || m_HigherLimitQualifier != omu_NO_RANGE";
    EXPECT_EQ(assertions.Take(), (Texts{condition, condition}));

    const std::tuple<double, int, double> rows[] = {
        {2.75, 2, 2.75},
        {-2.75, -2, -2.75},
        {1e20, 2147483647, 1e20},
        {-1e300, -2147483647 - 1, -1e300},
        {1.0 / 3.0, 0, 0.333333333333333},
        {std::numeric_limits<double>::infinity(), 2147483647, std::numeric_limits<double>::infinity()}};
    Range range;
    for (const auto& [set, asInt, asDouble] : rows) {
        range.SetLowerLimitAsDouble(set);
        range.SetHigherLimitAsInt(asInt);
        EXPECT_EQ(range.LowerLimitAsInt(), asInt);
        EXPECT_EQ(range.LowerLimitAsDouble(), asDouble);
        EXPECT_EQ(range.HigherLimitAsInt(), asInt);
        EXPECT_EQ(range.HigherLimitAsDouble(), asInt);
    }
    EXPECT_EQ(Range().LowerLimitAsInt(), 0);
}

TEST(Exceptions, A_translation_may_turn_the_order_of_the_names_around)
{
    auto& manager = thr_ThreadSingleton<uti_ResourceManager>::Instance();
    manager.InstallLookup([](const char* label, const char* text) {
        return std::string_view(label) == "omu_TypeErrorException_MSGID_05" ? cow_String(": %2$s, not %1$s")
                                                                            : cow_String(text);
    });
    EXPECT_EQ(omu_ArgTypeErrorException(1, "%1$s", "string", "").JournalMessage(), "arg1: %1$s, not string");
    manager.InstallLookup({});
}

template <class E> void ExpectLabels(const std::string& className, int count)
{
    const auto labels = uti_LabelMap<E>::ResourceNames();
    ASSERT_EQ(labels.Length(), count) << className;
    for (int key = 0; key < count; ++key) {
        const std::string label = className + "_MSGID_0" + std::to_string(key);
        EXPECT_EQ(labels[key], label);
        EXPECT_EQ(uti_LabelMap<E>::ResourceKey(label), static_cast<E>(key));
    }
}

TEST(Exceptions, Labels_name_the_class_and_the_key)
{
    ExpectLabels<omu_TypeErrorExceptionEnm>("omu_TypeErrorException", 7);
    ExpectLabels<omu_BreNameErrorExceptionEnm>("omu_BreNameErrorException", 4);
    ExpectLabels<omu_AttributeErrorExceptionEnm>("omu_AttributeErrorException", 3);
    ExpectLabels<omu_AccessErrorExceptionEnm>("omu_AccessErrorException", 1);
    ExpectLabels<omu_ColorErrorExceptionEnm>("omu_ColorErrorException", 1);
    ExpectLabels<omu_FontErrorExceptionEnm>("omu_FontErrorException", 1);
    ExpectLabels<omu_RangeErrorExceptionEnm>("omu_RangeErrorException", 3);
}

TEST(Exceptions, Streams_of_numbers_that_are_no_kinds_are_refused)
{
    const auto expectRefused = []<class E>(const E& exception, int offset, std::int32_t number) {
        EXPECT_EQ(Refusal<E>(WithNumber(StreamOf(exception), static_cast<std::size_t>(offset), number)),
                  "no valid kind of exception at offset " + std::to_string(offset));
    };
    expectRefused(Attribute(), 8, 3);
    expectRefused(Attribute(), 8, -1);
    expectRefused(BreName(), 8, 4);
    expectRefused(Range(), 12, 3); // value kind, lower qualifier, higher qualifier
    expectRefused(Range(), 20, 3);
    expectRefused(Range(), 28, -1);

    const std::string bytes = StreamOf(omu_KeyErrorException("k"));
    alignas(omu_KeyErrorException) unsigned char place[sizeof(omu_KeyErrorException)];
    bio_Ifilter in(bytes.data(), bytes.size());
    const void* const built = omu_KeyErrorException::CtorFunc(in, place);
    EXPECT_EQ(built, place) << "built in place";
    std::destroy_at(static_cast<const omu_KeyErrorException*>(built));
}
