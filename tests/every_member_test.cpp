#include <gmock/gmock.h>
#include <memory>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/late_bound.h>
#include <norvakavlor/runtime/dictionary.h>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/runtime/log.h>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/xml/node_object.h>
#include <set>
#include <string>
#include <tests/support/client.h>
#include <tests/support/fixtures.h>
#include <vector>

// Walks the tables: what holds for every class and every member, whatever it does.
namespace norvakavlor {
namespace {

using namespace testing;

/// Members may leave a validation string behind, which is the thread's.
struct NoSharedState {
    ~NoSharedState() {
        LoginGlobals::StoreValidationString("");
        setLogFile("");
    }
};

std::vector<Ref<Object>> oneOfEachClass() {
    std::vector<Ref<Object>> objects;
    for (const ClassTable table : creatableClasses())
        objects.push_back(table().create());
    objects.push_back(New<Dictionary>());
    objects.push_back(New<KeyedCollection<std::string>>());
    return objects;
}

/// An argument that a client might pass: `turn` chooses among good ones and odd ones.
class Arguments {
public:
    static constexpr int kTurns = 5;

    explicit Arguments(int turn) : turn_(turn) {}

    Value of(const Type& type) const {
        switch (turn_) {
        case 1:
            return {};
        case 2:
            return Value::Null();
        case 3:
            return Value::nothing();
        case 4:
            return "no \xC3\xBC\xFF number";
        default:
            return fitting(type);
        }
    }

private:
    Value fitting(const Type& type) const {
        switch (type.kind) {
        case Type::Kind::Text:
            return folder_.file("document.xml");
        case Type::Kind::Boolean:
            return true;
        case Type::Kind::Int16:
        case Type::Kind::Int32:
            return int32_t(1);
        case Type::Kind::Double:
            return 2.5;
        case Type::Kind::Date:
            return Date{38060.75};
        case Type::Kind::Object:
            return type.objectClass && type.objectClass().create ? Value(type.objectClass().create())
                                                                 : Value::nothing();
        case Type::Kind::Node:
        case Type::Kind::Document:
            return node();
        case Type::Kind::Array:
            return std::make_shared<Array>(Array{0, {"a", Value(), Value::nothing()}});
        case Type::Kind::Scalar:
        case Type::Kind::Any:
        case Type::Kind::None:
            break;
        }
        return "1";
    }

    static Value node() {
        auto document = std::make_shared<xml::Document>(testing::parsed(
            "<list a=\"1\"><id>1</id>text<!-- remark --><member id=\"2\"><id>2</id><name/></member></list>"));
        const xml::Node root = document->root();
        return New<NodeObject>(std::move(document), root);
    }

    const int turn_;
    const testing::TemporaryFolder folder_;
};

TEST(EveryClass, IsCreatedByItsNameAndNamedOnce) {
    EXPECT_EQ(creatableClasses().size(), 37u);
    std::set<std::string> names;
    for (const ClassTable table : creatableClasses()) {
        const Ref<Object> made = CreateObject("NorvaKavlor." + table().name);
        EXPECT_EQ(&made->dynamicClass(), &table());
        EXPECT_TRUE(names.insert(upperCase(table().name)).second) << table().name;
    }
}

TEST(EveryMember, ReturnsOrRaises) {
    const testing::RecordedMessages messages;
    const NoSharedState afterwards;
    for (int turn = 0; turn < Arguments::kTurns; ++turn) {
        const Arguments arguments(turn);
        for (const Ref<Object>& object : oneOfEachClass()) {
            for (const Member& member : object->dynamicClass().members()) {
                SCOPED_TRACE(object->dynamicClass().name + "." + member.name + ", turn " +
                             std::to_string(turn));
                std::vector<Value> values;
                for (const Parameter& parameter : member.parameters)
                    values.push_back(arguments.of(parameter.type));
                // Anything but an Error that comes out of a member fails the test here.
                errorNumber([&] { client::call(*object, member.name, values); });
                if (member.put && member.name != "LogFile") // which would be written
                    errorNumber([&] { client::put(*object, member.name, arguments.of(member.type)); });
            }
        }
    }
}

/// What a parameter does not take, and the error that this raises.
std::pair<Value, int32_t> misfit(const Parameter& parameter) {
    constexpr int kMismatch = 13;
    switch (parameter.type.kind) {
    case Type::Kind::Boolean:
    case Type::Kind::Int16:
    case Type::Kind::Int32:
    case Type::Kind::Double:
    case Type::Kind::Date:
        return {"no number", kMismatch};
    case Type::Kind::Text:
    case Type::Kind::Array:
    case Type::Kind::Object:
    case Type::Kind::Node:
    case Type::Kind::Document:
        return {New<Dictionary>(), kMismatch};
    case Type::Kind::Scalar:
    case Type::Kind::Any:
    case Type::Kind::None:
        break;
    }
    return {{}, 0};
}

TEST(EveryMember, RefusesWhatItDoesNotTake) {
    const testing::RecordedMessages messages;
    const NoSharedState afterwards;
    const Arguments arguments(0);
    size_t calls = 0;
    for (const Ref<Object>& object : oneOfEachClass()) {
        for (const Member& member : object->dynamicClass().members()) {
            if (!member.get)
                continue;
            const auto refused = [&](const std::vector<Value>& values, int32_t error,
                                     const std::string& what) {
                EXPECT_EQ(errorNumber([&] { client::call(*object, member.name, values); }), error)
                    << object->dynamicClass().name << "." << member.name << ", " << what;
                ++calls;
            };
            std::vector<Value> fitting;
            for (const Parameter& parameter : member.parameters)
                fitting.push_back(arguments.of(parameter.type));
            for (size_t index = 0; index < fitting.size(); ++index) {
                const Parameter& parameter = member.parameters[index];
                if (!parameter.optional)
                    refused({fitting.begin(), fitting.begin() + static_cast<std::ptrdiff_t>(index)}, 449,
                            parameter.name + " left out");
                const auto [value, error] = misfit(parameter);
                std::vector<Value> values = fitting;
                values[index] = value;
                if (error != 0 && !parameter.byReference)
                    refused(values, error, parameter.name + " of another type");
            }
            fitting.emplace_back(1);
            if (member.kind == Member::Kind::Method)
                refused(fitting, 450, "one argument more");
        }
    }
    EXPECT_GT(calls, 600u);
}

bool isCollection(const Type& type) {
    return type.objectClass &&
           (type.objectClass().name == "Collection" || type.objectClass().name == "Dictionary");
}

TEST(EveryProperty, GivesBackWhatWasPutOrIsReadOnly) {
    std::vector<std::string> readOnlyCollections;
    const NoSharedState afterwards;
    const Arguments arguments(0);
    for (const Ref<Object>& object : oneOfEachClass()) {
        for (const Member& member : object->dynamicClass().members()) {
            SCOPED_TRACE(object->dynamicClass().name + "." + member.name);
            const Value value = arguments.of(member.type);
            if (!member.put) {
                if (member.kind == Member::Kind::Property && isCollection(member.type))
                    readOnlyCollections.push_back(object->dynamicClass().name + "." + member.name);
                EXPECT_EQ(errorNumber([&] { client::put(*object, member.name, value); }), 438);
            } else if (isCollection(member.type)) {
                const Value former = client::get(*object, member.name);
                client::put(*object, member.name, Value::nothing());
                const Value empty = client::get(*object, member.name);
                EXPECT_FALSE(empty.isAbsent());
                EXPECT_FALSE(empty.toObject() == former.toObject());
                client::put(*object, member.name, former);
                const Value otherKind = New<KeyedCollection<Dictionary>>();
                EXPECT_EQ(errorNumber([&] { client::put(*object, member.name, otherKind); }), 13);
                EXPECT_TRUE(client::get(*object, member.name).toObject() == former.toObject());
            } else if (member.get && member.parameters.empty()) {
                client::put(*object, member.name, value);
                const Value read = client::get(*object, member.name);
                if (value.isObject()) {
                    EXPECT_TRUE(read.toObject() == value.toObject());
                } else {
                    EXPECT_EQ(read.toText(), value.toText());
                }
            }
        }
    }
    EXPECT_THAT(readOnlyCollections,
                ::testing::ElementsAre("TextBooks.textBooks", "Courses.Courses", "Objectives.Objectives",
                                       "TaskPool.Tasks", "QuestionPool.Questions", "Students.Students"));
}

} // namespace
} // namespace norvakavlor
