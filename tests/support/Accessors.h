/// One suite over all accessors of the structural classes. A row names an accessor and holds its functions;
/// what they have to do comes from the dictionary: the accessor `bodySID` must reach the property that is
/// called BodySID there, with its type, and have a `reset…` unless the property is required.
#pragma once

#include "MXF/Zelm/Metadata/PartitionMetadata.h"
#include "MXF/Zelm/Types/Collection.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace MXF::Zelm::Test {

struct Accessor {
    std::string name;
    bool removable; ///< has a `reset…`
    /// True when the set is of the class that has the accessor.
    std::function<bool(Metadata::MetadataSet&)> appliesTo;
    /// Sets and gets the property, which the attribute defines and an empty set has not.
    std::function<void(Metadata::MetadataSet&, MetaMetadata::MetaAttribute const&)> check;
};

/// Checks each row on a new set of each class of `classes` (keys) that it applies to, and that the rows reach
/// all properties of the classes, except InstanceUID and those that `without` names (as in the registers).
void checkAccessors(std::vector<KLV::Key> const& classes, std::vector<Accessor> const& rows,
                    std::vector<std::string> const& without);

/// The rows of TrackableMetadataSet.
std::vector<Accessor> const& trackableAccessors();

namespace AccessorChecks {

using Attribute = MetaMetadata::MetaAttribute;
using Metadata::MetadataSet;

/// Two different values of a type.
struct Samples {
    Templates::auto_ptr<Types::SimpleDataType> first;
    Templates::auto_ptr<Types::SimpleDataType> second;
};
Samples samples(Types::Identifiers::Identifier type);

/// As many equal members as the property needs at least.
void fill(Types::Collection& collection, Attribute const& attribute);

/// A new set, in the partition of `set`, that the property may refer to and `suits` accepts.
MetadataSet& target(MetadataSet& set, Attribute const& attribute, bool (*suits)(MetadataSet*));

template <class Set>
bool isA(MetadataSet* set) {
    return dynamic_cast<Set*>(set) != nullptr;
}

/// The value of the property in the set; a failure when there is none, or another one with it.
Types::BaseType const& only(MetadataSet const& set, Attribute const& attribute);

/// Type and member type are those of the property.
void expectType(Attribute const& attribute, Types::Identifiers::Identifier type,
                Types::Identifiers::Identifier memberType);

template <class Set>
Accessor row(const char* name, void (Set::*reset)(),
             std::function<void(Set&, Attribute const&)> const& setAndGet,
             std::function<bool(Set const&)> const& isThere) {
    return {name, reset != nullptr, [](MetadataSet& set) { return isA<Set>(&set); },
            [=](MetadataSet& plain, Attribute const& attribute) {
                auto& set = dynamic_cast<Set&>(plain);
                EXPECT_FALSE(isThere(set));
                setAndGet(set, attribute);
                EXPECT_TRUE(isThere(set));
                if (reset != nullptr) {
                    (set.*reset)();
                    EXPECT_FALSE(isThere(set));
                    (set.*reset)();
                }
            }};
}

} // namespace AccessorChecks

/// An accessor of one value.
template <class Set, class T>
Accessor value(const char* name, T const* (Set::*get)() const, void (Set::*put)(T const&),
               void (Set::*reset)() = nullptr) {
    using namespace AccessorChecks;
    return row<Set>(
        name, reset,
        [=](Set& set, Attribute const& attribute) {
            expectType(attribute, T::typeIdentifier, Types::Identifiers::Unknown);
            auto const values = samples(T::typeIdentifier);
            for (auto const& wanted : {values.first.get(), values.second.get()}) {
                (set.*put)(dynamic_cast<T const&>(*wanted));
                EXPECT_TRUE(only(set, attribute).equals(*wanted));
                ASSERT_NE((set.*get)(), nullptr);
                EXPECT_TRUE((set.*get)()->equals(*wanted));
            }
        },
        [=](Set const& set) { return (set.*get)() != nullptr; });
}

/// An accessor of an array or batch of values.
template <class Set, class T, class Member>
Accessor values(const char* name, T const* (Set::*get)() const, void (Set::*put)(T const&),
                void (Set::*add)(Member const&), void (Set::*reset)() = nullptr) {
    using namespace AccessorChecks;
    return row<Set>(
        name, reset,
        [=](Set& set, Attribute const& attribute) {
            expectType(attribute, T::typeIdentifier, Member::typeIdentifier);
            T collection(Member::typeIdentifier);
            fill(collection, attribute);
            (set.*put)(collection);
            EXPECT_TRUE(only(set, attribute).equals(collection));
            auto const another = samples(Member::typeIdentifier);
            (set.*add)(dynamic_cast<Member const&>(*another.second));
            collection.add(*another.second);
            ASSERT_NE((set.*get)(), nullptr);
            EXPECT_TRUE((set.*get)()->equals(collection));
        },
        [=](Set const& set) { return (set.*get)() != nullptr; });
}

/// An accessor of one reference.
template <class Set, class Target>
Accessor reference(const char* name, Target* (Set::*get)() const, void (Set::*put)(Target const&),
                   void (Set::*reset)() = nullptr) {
    using namespace AccessorChecks;
    return row<Set>(
        name, reset,
        [=](Set& set, Attribute const& attribute) {
            auto& wanted = dynamic_cast<Target&>(target(set, attribute, isA<Target>));
            (set.*put)(wanted);
            only(set, attribute);
            EXPECT_EQ((set.*get)(), &wanted);
        },
        [=](Set const& set) { return (set.*get)() != nullptr; });
}

/// An accessor of several references.
template <class Set, class Target>
Accessor references(const char* name, Templates::vector<Target*> (Set::*get)() const,
                    void (Set::*add)(Target const&), bool (Set::*remove)(Target const&),
                    void (Set::*reset)() = nullptr) {
    using namespace AccessorChecks;
    return row<Set>(
        name, reset,
        [=](Set& set, Attribute const& attribute) {
            auto& first = dynamic_cast<Target&>(target(set, attribute, isA<Target>));
            auto& second = dynamic_cast<Target&>(target(set, attribute, isA<Target>));
            (set.*add)(first);
            (set.*add)(second);
            only(set, attribute);
            EXPECT_EQ((set.*get)(), (Templates::vector<Target*>{&first, &second}));
            EXPECT_TRUE((set.*remove)(first));
            EXPECT_FALSE((set.*remove)(first));
            EXPECT_EQ((set.*get)(), Templates::vector<Target*>{&second});
        },
        [=](Set const& set) { return !(set.*get)().empty(); });
}

} // namespace MXF::Zelm::Test
