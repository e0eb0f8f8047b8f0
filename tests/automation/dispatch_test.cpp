#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <norvakavlor/component/automation/com_object.h>
#include <norvakavlor/component/automation/guid.h>
#include <norvakavlor/platform/windows/com_foreign_object.h>
#include <norvakavlor/runtime/dictionary.h>
#include <objbase.h>
#include <ocidl.h>
#include <optional>
#include <string>
#include <tests/automation/client.h>
#include <tests/support/probe.h>
#include <vector>

namespace norvakavlor {
namespace {

using namespace testing;

/// A client's object with a default value: a property, a method, both or neither.
class ClientObject final : public ComObject<IDispatch> {
public:
    std::optional<Value> property;
    std::optional<Value> method;
    std::function<void()> atEnd;
    int runs = 0; ///< calls of the method

    ClientObject(std::optional<Value> itsProperty, std::optional<Value> itsMethod = {})
        : property(std::move(itsProperty)), method(std::move(itsMethod)) {}

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result,
                                     EXCEPINFO*, UINT*) override {
        const bool runsMethod = (flags & DISPATCH_METHOD) != 0 && method;
        const std::optional<Value>& value = runsMethod ? method : property;
        if (id != DISPID_VALUE || !value || (!runsMethod && !(flags & DISPATCH_PROPERTYGET)))
            return DISP_E_MEMBERNOTFOUND;
        runs += runsMethod;
        *result = toVariant(*value).detach();
        return S_OK;
    }

private:
    ~ClientObject() override {
        if (atEnd)
            atEnd();
    }
    void* queryOwn(REFIID id) override {
        return id == __uuidof(IDispatch) ? static_cast<IDispatch*>(this) : nullptr;
    }
};

ComPointer<ClientObject> clientObject(std::optional<Value> property, std::optional<Value> method = {}) {
    ComPointer<ClientObject> pointer;
    *pointer.receive() = new ClientObject(std::move(property), std::move(method));
    return pointer;
}

class Dispatch : public ::testing::Test {
protected:
    Outcome run(const wchar_t* member, std::vector<VARIANT> arguments = {}) const {
        return call(*object.get(), member, std::move(arguments));
    }
    Outcome set(const wchar_t* member, VARIANT value, WORD flags = DISPATCH_PROPERTYPUT) const {
        return put(*object.get(), member, value, flags);
    }

    const Ref<Probe> probe = New<Probe>();
    const ComPointer<IDispatch> object = wrapperOf(probe);
};

constexpr HRESULT runtimeResult(int number) {
    return static_cast<HRESULT>(0x800A0000u + static_cast<unsigned>(number));
}

TEST_F(Dispatch, FindsMembersAndNamedArguments) {
    EXPECT_EQ(idsOf(*object.get(), {L"TEXT"}), idsOf(*object.get(), {L"text"}));
    const std::vector<DISPID> ids = idsOf(*object.get(), {L"Join", L"THIRD", L"first"});
    EXPECT_EQ(ids[1], 2);
    EXPECT_EQ(ids[2], 0);
    HRESULT result = S_OK;
    EXPECT_EQ(idsOf(*object.get(), {L"None", L"first"}, &result)[0], DISPID_UNKNOWN);
    EXPECT_EQ(result, DISP_E_UNKNOWNNAME);
    EXPECT_EQ(idsOf(*object.get(), {L"Join", L"fourth"}, &result)[1], DISPID_UNKNOWN);
    EXPECT_EQ(result, DISP_E_UNKNOWNNAME);
    EXPECT_EQ(idsOf(*object.get(), {L"_NewEnum"})[0], DISPID_UNKNOWN);
    EXPECT_EQ(idsOf(*wrapperOf(probe->Books).get(), {L"_newenum"})[0], DISPID_NEWENUM);
}

TEST_F(Dispatch, TakesNamedArguments) {
    const std::vector<DISPID> ids = idsOf(*object.get(), {L"Join", L"third", L"second"});
    TextArgument first("a"), second("b"), third("c");
    VARIANT values[] = {third, second, first};
    DISPID named[] = {ids[1], ids[2]};
    DISPPARAMS passed{values, named, 3, 2};
    EXPECT_EQ(invoke(*object.get(), ids[0], DISPATCH_METHOD, passed).asValue().toText(), "a|b|c");

    named[1] = 0; // which the positional one fills already
    EXPECT_EQ(invoke(*object.get(), ids[0], DISPATCH_METHOD, passed).number, runtimeResult(450));
    named[1] = 9;
    EXPECT_EQ(invoke(*object.get(), ids[0], DISPATCH_METHOD, passed).number, runtimeResult(448));
}

TEST_F(Dispatch, TakesEveryTypeOfArgument) {
    int16_t small = 3;
    double real = 2.5;
    float odd = 85.7f;
    BSTR bare = nullptr;
    VARIANT inner = number(70000), fault = ofType(VT_ERROR), money = ofType(VT_CY), date = ofType(VT_DATE);
    fault.scode = E_FAIL;
    money.cyVal.int64 = 9223372036854775807;
    date.date = 38060.5;
    const auto typed = [](VARTYPE type, const char* text) {
        VARIANT variant{};
        EXPECT_EQ(::VariantChangeTypeEx(&variant, toVariant(text).get(), LOCALE_INVARIANT, 0, type), S_OK);
        return variant;
    };
    TextArgument text("t");
    const struct {
        const char* what;
        VARIANT argument;
        const char* kind;
        const char* text;
    } cases[] = {
        {"empty", ofType(VT_EMPTY), "Empty", ""},
        {"left out", leftOut(), "Empty", ""},
        {"integer", number(7), "Int32", "7"},
        {"byte", typed(VT_UI1, "200"), "Int16", "200"},
        {"signed byte", typed(VT_I1, "-1"), "Int16", "-1"},
        {"beyond 32 bits", typed(VT_I8, "5000000000"), "Double", "5000000000"},
        {"single", typed(VT_R4, "0.5"), "Double", "0.5"},
        {"currency", typed(VT_CY, "1.25"), "Double", "1.25"},
        {"decimal", typed(VT_DECIMAL, "1.5"), "Double", "1.5"},
        // Those that have more digits than a double's, or others.
        {"odd single", typed(VT_R4, "85.7"), "ExactNumber", "85.7"},
        {"odd single by reference", reference(VT_R4, &odd), "ExactNumber", "85.7"},
        {"long currency", money, "ExactNumber", "922337203685477.5807"},
        {"beyond a double", typed(VT_I8, "9007199254740993"), "ExactNumber", "9007199254740993"},
        {"unsigned", typed(VT_UI8, "18446744073709551615"), "ExactNumber", "18446744073709551615"},
        {"long decimal", typed(VT_DECIMAL, "1234567890.123456789"), "ExactNumber", "1234567890.123456789"},
        {"boolean", typed(VT_BOOL, "True"), "Boolean", "True"},
        {"date", date, "Date", "3/14/2004 12:00:00 PM"},
        {"text", text, "Text", "t"},
        {"a text that is null", reference(VT_BSTR, &bare), "Text", ""},
        {"integer by reference", reference(VT_I2, &small), "Int16", "3"},
        {"double by reference", reference(VT_R8, &real), "Double", "2.5"},
        {"variant by reference", reference(VT_VARIANT, &inner), "Int32", "70000"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(run(L"KindOf", {c.argument}).asValue().toText(), c.kind);
        ASSERT_EQ(set(L"Anything", c.argument.vt == VT_ERROR ? ofType(VT_EMPTY) : c.argument).result, S_OK);
        EXPECT_EQ(probe->Anything.toText(), c.text);
        EXPECT_EQ(run(L"Anything").asValue().toText(), c.text);
    }
    EXPECT_EQ(run(L"KindOf", {ofType(VT_NULL)}).asValue().toText(), "Null");
    EXPECT_EQ(run(L"KindOf", {objectArgument(nullptr)}).asValue().toText(), "Nothing");
    EXPECT_EQ(run(L"KindOf", {objectArgument(object.get())}).asValue().toText(), "Object");
    EXPECT_EQ(run(L"KindOf", {fault}).number, runtimeResult(13));
    // A circle of references, as no sound client makes it, ends.
    VARIANT circle = reference(VT_VARIANT, nullptr);
    circle.pvarVal = &circle;
    EXPECT_EQ(run(L"KindOf", {circle}).number, runtimeResult(13));
}

TEST_F(Dispatch, GivesValuesOfEveryType) {
    const struct {
        Value value;
        VARTYPE type;
    } cases[] = {{{}, VT_EMPTY},
                 {Value::Null(), VT_NULL},
                 {true, VT_BOOL},
                 {int16_t(1), VT_I2},
                 {int32_t(1), VT_I4},
                 {1.5, VT_R8},
                 {Date{1}, VT_DATE},
                 {"\xC3\xA9", VT_BSTR},
                 {Value::nothing(), VT_DISPATCH},
                 {probe->Books, VT_DISPATCH},
                 {std::make_shared<Array>(Array{1, {"a", Value()}}), VT_ARRAY | VT_VARIANT}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.type);
        probe->Anything = c.value;
        Outcome outcome = run(L"Anything");
        EXPECT_EQ(outcome.value.get()->vt, c.type);
        const Value back = outcome.asValue();
        if (const auto* array = back.as<std::shared_ptr<Array>>()) {
            EXPECT_EQ((*array)->lowerBound, 1);
            EXPECT_EQ((*array)->at(1).toText(), "a");
            EXPECT_TRUE((*array)->at(2).isEmpty());
        } else {
            EXPECT_TRUE(back.storage() == c.value.storage());
        }
    }
}

TEST_F(Dispatch, GivesResultsBackInTheCallersTypes) {
    VARIANT variants[4] = {};
    EXPECT_EQ(run(L"Results", {reference(VT_VARIANT, &variants[0]), reference(VT_VARIANT, &variants[1]),
                               reference(VT_VARIANT, &variants[2]), reference(VT_VARIANT, &variants[3])})
                  .result,
              S_OK);
    EXPECT_EQ(variants[0].vt, VT_I2);
    EXPECT_EQ(variants[1].lVal, 70000);
    EXPECT_EQ(toValue(variants[2]).toText(), "result");
    EXPECT_EQ(variants[3].dblVal, 2.5);
    ::VariantClear(&variants[2]);

    // Typed variables: an int for a short, a text that is replaced, a variant that holds a reference.
    int first = 0;
    double second = 0;
    BSTR third = takeText("former");
    float fourth = 0;
    VARIANT inner = reference(VT_BSTR, &third);
    EXPECT_EQ(run(L"Results", {reference(VT_I4, &first), reference(VT_R8, &second),
                               reference(VT_VARIANT, &inner), reference(VT_R4, &fourth)})
                  .result,
              S_OK);
    EXPECT_EQ(first, 7);
    EXPECT_EQ(second, 70000);
    EXPECT_EQ(giveText(third), "result");
    EXPECT_EQ(fourth, 2.5f);

    // Arguments by value take nothing; a variable that cannot hold a result is an error.
    EXPECT_EQ(run(L"Results", {number(1), number(2), number(3), number(4)}).result, S_OK);
    BYTE narrow = 0;
    EXPECT_EQ(run(L"Results", {number(1), reference(VT_UI1, &narrow), number(3), number(4)}).number,
              runtimeResult(6));

    // What the call does not set stays, whatever it is.
    VARIANT set = {}, kept = number(5);
    EXPECT_EQ(run(L"Partly", {reference(VT_VARIANT, &set), reference(VT_VARIANT, &kept)}).result, S_OK);
    EXPECT_EQ(toValue(set).toText(), "set");
    EXPECT_EQ(kept.vt, VT_I4);
    ::VariantClear(&set);
}

TEST_F(Dispatch, ChangesArraysInPlace) {
    const Ref<Dictionary> own = New<Dictionary>();
    for (const bool nested : {false, true}) {
        SAFEARRAY* array = ::SafeArrayCreateVector(VT_VARIANT, -1, 3);
        VARIANT* elements = static_cast<VARIANT*>(array->pvData);
        elements[0] = objectArgument(wrapperOf(own).detach());
        elements[1] = ofType(VT_CY);
        elements[2] = toVariant("last").detach();
        // As a script passes a variable that holds an array, and as a typed client does.
        VARIANT holder = ofType(VT_ARRAY | VT_VARIANT);
        holder.parray = array;
        VARIANT inner = reference(VT_ARRAY | VT_VARIANT, &array);
        EXPECT_EQ(run(L"SwapEnds", {nested ? reference(VT_VARIANT, &inner) : holder}).result, S_OK);
        EXPECT_EQ(toValue(elements[0]).toText(), "last");
        EXPECT_TRUE(toValue(elements[2]).toObject() == Ref<Object>(own));
        EXPECT_EQ(elements[1].vt, VT_CY) << "an element that was left alone";
        ::SafeArrayDestroy(array);
    }

    SAFEARRAY* objects = ::SafeArrayCreateVector(VT_DISPATCH, 0, 2);
    static_cast<IDispatch**>(objects->pvData)[1] = wrapperOf(own).detach();
    EXPECT_EQ(run(L"SwapEnds", {reference(VT_ARRAY | VT_DISPATCH, &objects)}).result, S_OK);
    EXPECT_EQ(static_cast<IDispatch**>(objects->pvData)[1], nullptr);
    EXPECT_TRUE(ownObject(*static_cast<IDispatch**>(objects->pvData)[0]) == Ref<Object>(own));
    ::SafeArrayDestroy(objects);

    SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
    VARIANT table = ofType(VT_ARRAY | VT_VARIANT);
    table.parray = ::SafeArrayCreate(VT_VARIANT, 2, bounds);
    EXPECT_EQ(run(L"SwapEnds", {table}).number, runtimeResult(13));
    ::SafeArrayDestroy(table.parray);
    // Never dimensioned: it has no ends.
    SAFEARRAY* none = nullptr;
    EXPECT_EQ(run(L"SwapEnds", {reference(VT_ARRAY | VT_VARIANT, &none)}).number, runtimeResult(9));
}

TEST_F(Dispatch, ReportsEachKindOfError) {
    TextArgument source("Class:Method"), description("What f\xC3\xA4iled");
    const struct {
        const char* what;
        std::function<Outcome()> act;
        HRESULT number;
        const char* source;
        const char* description;
    } cases[] = {{"an object error",
                  [&] {
                      return run(L"Raise", {number(static_cast<int>(0x80040281)), source, description});
                  },
                  static_cast<HRESULT>(0x80040281), "Class:Method", "What f\xC3\xA4iled"},
                 {"a plain number",
                  [&] {
                      return run(L"Raise", {number(641), source, description});
                  },
                  runtimeResult(641), "Class:Method", "What f\xC3\xA4iled"},
                 {"no memory", [&] { return run(L"RunOutOfMemory"); }, runtimeResult(7), "", "Out of memory"},
                 {"a fault", [&] { return run(L"Fail"); }, runtimeResult(51), "NorvaKavlor",
                  "Internal error: a fault of the library"},
                 {"read-only",
                  [&] { return set(L"Books", objectArgument(nullptr), DISPATCH_PROPERTYPUTREF); },
                  runtimeResult(438), "NorvaKavlor", "Object doesn't support this property or method"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Outcome outcome = c.act();
        ComPointer<IErrorInfo> elsewhere;
        EXPECT_EQ(::GetErrorInfo(0, elsewhere.receive()), S_FALSE) << "the caller has the details already";
        EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
        EXPECT_EQ(outcome.number, c.number);
        EXPECT_EQ(outcome.source, c.source);
        EXPECT_EQ(outcome.description, c.description);
    }
    // A client that wants no details gets the number as the result, and the details where it looks for them.
    DISPPARAMS none{};
    EXPECT_EQ(object->Invoke(idsOf(*object.get(), {L"Fail"})[0], IID_NULL, 0, DISPATCH_METHOD, &none, nullptr,
                             nullptr, nullptr),
              runtimeResult(51));
    ComPointer<IErrorInfo> info;
    ASSERT_EQ(::GetErrorInfo(0, info.receive()), S_OK);
    BSTR text = nullptr;
    info->GetDescription(&text);
    EXPECT_EQ(giveText(text), "Internal error: a fault of the library");
}

TEST_F(Dispatch, AnswersWhatNoTableHolds) {
    DISPPARAMS none{};
    EXPECT_EQ(invoke(*object.get(), 4711, DISPATCH_METHOD, none).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(*object.get(), DISPID_VALUE, DISPATCH_PROPERTYGET, none).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(*object.get(), DISPID_NEWENUM, DISPATCH_PROPERTYGET, none).result,
              DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(call(*object.get(), L"Join", {}, DISPATCH_PROPERTYGET).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(set(L"Join", number(1)).number, runtimeResult(438));
    DISPPARAMS noValue{};
    EXPECT_EQ(invoke(*object.get(), idsOf(*object.get(), {L"Text"})[0], DISPATCH_PROPERTYPUT, noValue).number,
              runtimeResult(449));
    EXPECT_EQ(object->Invoke(0, __uuidof(IDispatch), 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              DISP_E_UNKNOWNINTERFACE);
}

TEST_F(Dispatch, KeepsOneIdentity) {
    probe->Held = probe;
    Outcome outcome = run(L"Held");
    EXPECT_EQ(outcome.value.get()->pdispVal, object.get());
    probe->Held = nullptr;
    EXPECT_TRUE(static_cast<bool>(object.as<ISupportErrorInfo>()));
    ComPointer<IDispatch> byInterface;
    EXPECT_EQ(object->QueryInterface(guidsOf(Probe::classInfo()).interfaceGuid,
                                     reinterpret_cast<void**>(byInterface.receive())),
              S_OK);
    EXPECT_EQ(byInterface.get(), object.get());

    // An object of another library goes in and comes out as itself, and is none of ours.
    ComPointer<IStream> stream;
    ASSERT_EQ(::CreateStreamOnHGlobal(nullptr, TRUE, stream.receive()), S_OK);
    VARIANT foreign = ofType(VT_UNKNOWN);
    foreign.punkVal = stream.get();
    EXPECT_EQ(set(L"Held", foreign, DISPATCH_PROPERTYPUTREF).result, S_OK);
    EXPECT_EQ(run(L"Held").value.get()->punkVal, static_cast<IUnknown*>(stream.get()));
    EXPECT_EQ(set(L"Book", foreign, DISPATCH_PROPERTYPUTREF).number, runtimeResult(13));
    EXPECT_EQ(set(L"Text", foreign).number, runtimeResult(13)) << "it has no default value";
    EXPECT_EQ(set(L"Book", objectArgument(object.get()), DISPATCH_PROPERTYPUTREF).number, runtimeResult(13));
}

TEST_F(Dispatch, TakesAnObjectForItsDefaultValue) {
    const auto key = clientObject("B"), position = clientObject(2), byMethod = clientObject({}, "B"),
               none = clientObject({}), function = clientObject("function () {}", "ran"),
               circle = clientObject({});
    VARIANT keyValue = objectArgument(key.get());
    const auto nested = clientObject(toValue(keyValue));
    circle->property = toValue(objectArgument(circle.get()));
    for (const char* id : {"A", "B"}) {
        auto book = New<TextBook>();
        book->ID = id;
        probe->Books->Add(book, id);
    }
    const ComPointer<IDispatch> books = wrapperOf(probe->Books);
    const ComPointer<IDispatch> words = wrapperOf(New<KeyedCollection<std::string>>());
    TextArgument text("text");
    const struct {
        const char* what;
        ComPointer<ClientObject> argument;
        const char* text; ///< as a text property's new value; null where there is none
        bool isIndex;     ///< of the second book
    } cases[] = {{"a key", key, "B", true},
                 {"a position", position, "2", true},
                 {"a method's value", byMethod, "B", true},
                 {"an object's default object", nested, "B", true},
                 {"a function", function, "function () {}", false},
                 {"none", none, nullptr, false},
                 {"a circle", circle, nullptr, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const VARIANT argument = objectArgument(c.argument.get());
        EXPECT_EQ(set(L"Text", argument).number, c.text ? S_OK : runtimeResult(13));
        EXPECT_EQ(call(*words.get(), L"Add", {argument, argument}).number, c.text ? S_OK : runtimeResult(13));
        if (c.text) {
            EXPECT_EQ(probe->Text, c.text);
            EXPECT_EQ(run(L"Join", {text, text, argument}).asValue().toText(),
                      "text|text|" + std::string(c.text));
            EXPECT_EQ(call(*words.get(), L"Item", {TextArgument(c.text)}).asValue().toText(), c.text);
            EXPECT_EQ(call(*words.get(), L"Remove", {number(1)}).result, S_OK);
        }
        if (c.isIndex) {
            for (const ComPointer<IDispatch>& from : {books, object})
                EXPECT_TRUE(call(*from.get(), from.get() == books.get() ? L"Item" : L"Books", {argument})
                                .asValue()
                                .toObject() == Ref<Object>(probe->Books->Item(2)));
        }
        // What may be any value stays the object.
        set(L"Anything", argument, DISPATCH_PROPERTYPUTREF);
        EXPECT_EQ(run(L"Anything").value.get()->pdispVal, c.argument.get());
    }
    EXPECT_EQ(function->runs, 0);
    circle->property.reset();
    probe->Anything = Value();
}

TEST_F(Dispatch, LetsGoOfAClientsObjectLast) {
    // A variable that takes a result holds it when the former content goes.
    VARIANT variable = ofType(VT_DISPATCH);
    ComPointer<ClientObject> former = clientObject({});
    VARTYPE seen = VT_EMPTY;
    former->atEnd = [&] { seen = variable.vt; };
    variable.pdispVal = former.detach();
    run(L"Results", {number(1), number(2), number(3), reference(VT_VARIANT, &variable)});
    EXPECT_EQ(seen, VT_R8);

    // A chain of any length, through clients' objects and not.
    int ended = 0;
    ComPointer<ClientObject> last = clientObject({});
    last->atEnd = [&] { ++ended; };
    ComPointer<IDispatch> chain(last.get());
    last = {};
    TextArgument next("next");
    for (int link = 0; link < 40000; ++link) {
        const ComPointer<IDispatch> dictionary = wrapperOf(New<Dictionary>());
        ASSERT_EQ(call(*dictionary.get(), L"Add", {next, objectArgument(chain.get())}).result, S_OK);
        chain = dictionary;
        if (link % 2)
            chain = ComPointer<IDispatch>(clientObject(toValue(objectArgument(chain.get()))).get());
    }
    EXPECT_EQ(ended, 0);
    chain = {};
    EXPECT_EQ(ended, 1);
}

TEST_F(Dispatch, EnumeratesWhileTheCollectionChanges) {
    for (const char* id : {"A", "B", "C"}) {
        auto book = New<TextBook>();
        book->ID = id;
        probe->Books->Add(book, id);
    }
    const ComPointer<IDispatch> books = wrapperOf(probe->Books);
    Outcome outcome = call(*books.get(), L"_NewEnum");
    const ComPointer<IEnumVARIANT> walk =
        ComPointer<IUnknown>(outcome.value.get()->punkVal).as<IEnumVARIANT>();
    ASSERT_TRUE(static_cast<bool>(walk));
    const auto next = [](const ComPointer<IEnumVARIANT>& from) -> std::string {
        OwnedVariant element;
        if (from->Next(1, element.get(), nullptr) != S_OK)
            return "(end)";
        const Ref<Object> book = toValue(*element.get()).toObject();
        return dynamic_cast<TextBook&>(*book).ID;
    };
    EXPECT_EQ(next(walk), "A");
    ComPointer<IEnumVARIANT> copy;
    ASSERT_EQ(walk->Clone(copy.receive()), S_OK);
    probe->Books->Remove("A");
    EXPECT_EQ(next(walk), "B");
    EXPECT_EQ(next(copy), "B");
    EXPECT_EQ(walk->Skip(1), S_OK);
    EXPECT_EQ(next(walk), "(end)");
    probe->Books->Add(New<TextBook>(), "D");
    EXPECT_EQ(next(walk), "");
    EXPECT_EQ(walk->Skip(1), S_FALSE);
    walk->Reset();
    VARIANT several[5] = {};
    ULONG fetched = 0;
    EXPECT_EQ(walk->Next(5, several, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 3u);
    for (VARIANT& element : several)
        ::VariantClear(&element);
    EXPECT_EQ(walk->Next(2, several, nullptr), E_INVALIDARG);
    EXPECT_EQ(walk->Next(0, nullptr, nullptr), S_OK);
}

} // namespace
} // namespace norvakavlor
