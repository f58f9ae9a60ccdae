// Association walks of repository instances and classes, with every filter
// and in both directions.
#include <set>

#include <gtest/gtest.h>

#include "InmemTestSupport.h"
#include "TZENTAException.h"

using namespace inmemtest;

namespace {

typedef std::multiset<std::string> TNames;

// Person <- Employee; Dept. WorksIn(Worker: Person, Unit: Dept) <- LeadsIn;
// Manages(Boss: Person, Report: Person).
class Associations : public ::testing::Test {
protected:
    void SetUp() override {
        ns = StandardRepository();
        person = ns->AllocateClass("Person", {}, NoContext());
        AddKey(*ns, *person, "Name");
        employee = ns->AllocateClass("Employee", person, NoContext());
        dept = ns->AllocateClass("Dept", {}, NoContext());
        AddKey(*ns, *dept, "Name");
        worksIn = AddAssociation(*ns, "WorksIn", {{"Worker", "Person"}, {"Unit", "Dept"}});
        leadsIn = ns->AllocateClass("LeadsIn", worksIn, NoContext());
        manages = AddAssociation(*ns, "Manages", {{"Boss", "Person"}, {"Report", "Person"}});

        alice = AddInstance(*employee, {{"Name", TCIMValue("alice")}});
        bob = AddInstance(*person, {{"Name", TCIMValue("bob")}});
        carol = AddInstance(*employee, {{"Name", TCIMValue("carol")}});
        dev = AddInstance(*dept, {{"Name", TCIMValue("dev")}});
        ops = AddInstance(*dept, {{"Name", TCIMValue("ops")}});
        Link(*worksIn, "Worker", alice, "Unit", dev);
        Link(*worksIn, "Worker", carol, "Unit", dev);
        Link(*leadsIn, "Worker", carol, "Unit", ops);
        Link(*manages, "Boss", alice, "Report", bob);
        Link(*manages, "Boss", alice, "Report", carol);
    }

    static boost::shared_ptr<ICIMInstance> Link(ICIMClass& association, const char* nearRole,
                                                const boost::shared_ptr<ICIMInstance>& nearEnd, const char* farRole,
                                                const boost::shared_ptr<ICIMInstance>& farEnd) {
        return AddInstance(association, {{nearRole, PathOf(nearEnd)}, {farRole, PathOf(farEnd)}});
    }

    static TNames Associators(ICIMInstance& source, const std::string& assocClass = "",
                              const std::string& resultClass = "", const std::string& role = "",
                              const std::string& resultRole = "") {
        TCollector<ICIMInstance> found;
        source.EnumerateAssociatedInstances(found.Callback(), assocClass, resultClass, role, resultRole, NoContext());
        std::vector<std::string> names = PropertyTexts(found.items, "Name");
        return TNames(names.begin(), names.end());
    }

    // "Class(near->far)" for each association instance found.
    static TNames References(ICIMInstance& source, const std::string& resultClass = "", const std::string& role = "") {
        TCollector<ICIMInstance> found;
        source.EnumerateAssociationInstances(found.Callback(), resultClass, role, NoContext());
        TNames described;
        for (const auto& association : found.items) described.insert(association->GetReference(NoContext()).GetPath());
        return described;
    }

public:
    boost::shared_ptr<TInmemNamespace> ns;
    boost::shared_ptr<ICIMClass> person, employee, dept, worksIn, leadsIn, manages;
    boost::shared_ptr<ICIMInstance> alice, bob, carol, dev, ops;
};

TEST_F(Associations, AssociatorsWithEachFilter) {
    struct TCase {
        const char* label;
        boost::shared_ptr<ICIMInstance> Associations::*source;
        const char* assocClass;
        const char* resultClass;
        const char* role;
        const char* resultRole;
        TNames expected;
    };
    const TCase cases[] = {
        {"no filter", &Associations::alice, "", "", "", "", {"dev", "bob", "carol"}},
        {"association class", &Associations::alice, "WorksIn", "", "", "", {"dev"}},
        {"association subclass counts", &Associations::carol, "worksin", "", "", "", {"dev", "ops"}},
        {"association subclass only", &Associations::carol, "LeadsIn", "", "", "", {"ops"}},
        {"result class", &Associations::alice, "", "Employee", "", "", {"carol"}},
        {"result superclass", &Associations::alice, "", "Person", "", "", {"bob", "carol"}},
        {"role", &Associations::alice, "", "", "Boss", "", {"bob", "carol"}},
        {"role seen from the other end", &Associations::carol, "", "", "Report", "", {"alice"}},
        {"result role", &Associations::carol, "", "", "", "Unit", {"dev", "ops"}},
        {"result role of the other end", &Associations::bob, "", "", "", "Boss", {"alice"}},
        {"filters combined", &Associations::carol, "Manages", "Employee", "Report", "Boss", {"alice"}},
        {"no match", &Associations::bob, "WorksIn", "", "", "", {}},
        {"the other direction", &Associations::dev, "", "", "", "", {"alice", "carol"}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Associators(*(this->*c.source), c.assocClass, c.resultClass, c.role, c.resultRole), c.expected)
            << c.label;
    }
}

TEST_F(Associations, ReferencesWithEachFilter) {
    const std::string aliceDev = "WorksIn.Unit=\"Dept.Name=\\\"dev\\\"\",Worker=\"Employee.Name=\\\"alice\\\"\"";
    EXPECT_EQ(References(*alice).size(), 3u);
    EXPECT_EQ(References(*alice, "WorksIn"), TNames({aliceDev}));
    EXPECT_EQ(References(*carol, "WorksIn").size(), 2u) << "LeadsIn is a WorksIn";
    EXPECT_EQ(References(*alice, "", "Boss").size(), 2u);
    EXPECT_TRUE(References(*alice, "", "Report").empty());
    EXPECT_EQ(References(*dev).size(), 2u);
    EXPECT_TRUE(References(*bob, "LeadsIn").empty());
}

TEST_F(Associations, AFarEndReachedTwiceIsReportedOncePerAssociationInstance) {
    boost::shared_ptr<ICIMClass> mentors = AddAssociation(*ns, "Mentors", {{"Mentor", "Person"}, {"Pupil", "Person"}});
    Link(*mentors, "Mentor", alice, "Pupil", bob);
    EXPECT_EQ(Associators(*alice, "", "", "", "Report"), TNames({"bob", "carol"}));
    EXPECT_EQ(Associators(*alice), TNames({"dev", "bob", "bob", "carol"}));
    // A self-association names the instance at both ends: it is its own
    // associator, once.
    Link(*mentors, "Mentor", carol, "Pupil", carol);
    EXPECT_EQ(Associators(*carol, "Mentors"), TNames({"carol"}));
    EXPECT_EQ(References(*carol, "Mentors").size(), 1u);
}

TEST_F(Associations, UnresolvableEndsAreSkippedAndCallbacksCanStop) {
    bob->Delete(NoContext());
    EXPECT_EQ(Associators(*alice, "Manages"), TNames({"carol"}));
    int calls = 0;
    alice->EnumerateAssociatedInstances([&](boost::shared_ptr<ICIMInstance>) { return ++calls < 1; }, "", "", "", "",
                                        NoContext());
    EXPECT_EQ(calls, 1);
    calls = 0;
    alice->EnumerateAssociationInstances([&](boost::shared_ptr<ICIMInstance>) { return ++calls < 2; }, "", "",
                                         NoContext());
    EXPECT_EQ(calls, 2);
}

TEST_F(Associations, ClassLevelWalks) {
    TCollector<ICIMClass> forEmployee, forDept, bossOnly, associated, resultFiltered;
    employee->EnumerateAssociationClasses(forEmployee.Callback(), "", "", NoContext());
    EXPECT_EQ(ClassNames(forEmployee.items), std::vector<std::string>({"WorksIn", "LeadsIn", "Manages"}));
    dept->EnumerateAssociationClasses(forDept.Callback(), "WorksIn", "", NoContext());
    EXPECT_EQ(ClassNames(forDept.items), std::vector<std::string>({"WorksIn", "LeadsIn"}));
    person->EnumerateAssociationClasses(bossOnly.Callback(), "", "Boss", NoContext());
    EXPECT_EQ(ClassNames(bossOnly.items), std::vector<std::string>({"Manages"}));
    employee->EnumerateAssociatedClasses(associated.Callback(), "", "", "", "", NoContext());
    EXPECT_EQ(ClassNames(associated.items), std::vector<std::string>({"Dept", "Person"}));
    employee->EnumerateAssociatedClasses(resultFiltered.Callback(), "", "Dept", "", "", NoContext());
    EXPECT_EQ(ClassNames(resultFiltered.items), std::vector<std::string>({"Dept"}));
}

TEST_F(Associations, AssociationClassesOutsideTheNamespaceCanBeDeclared) {
    boost::shared_ptr<TInmemNamespace> elsewhere = StandardRepository();
    boost::shared_ptr<ICIMClass> person2 = elsewhere->AllocateClass("Person", {}, NoContext());
    boost::shared_ptr<ICIMClass> external = AddAssociation(*elsewhere, "Knows", {{"Who", "Person"}, {"Whom", "Person"}});
    Link(*external, "Who", alice, "Whom", bob);
    EXPECT_TRUE(Associators(*alice, "Knows").empty());
    person->AddAssociationClass(external);
    EXPECT_EQ(Associators(*alice, "Knows"), TNames({"bob"}));
    person->RemoveAssociationClass(external);
    EXPECT_TRUE(Associators(*alice, "Knows").empty());
}

}  // namespace
