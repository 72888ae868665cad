#pragma once

#include <gtest/gtest.h>

#include <memory>

// A contract suite runs on each adapter of its port. A subject is one adapter together with what a test needs of the world around
// it; who makes the subject names its adapter in INSTANTIATE_TEST_SUITE_P, in a file of its own, so that a program has the suites
// on the adapters that are linked to it.
namespace quorvane {

template <typename Subject>
using SubjectMaker = std::unique_ptr<Subject> (*)();

/// Makes a certain subject: &makeSubject<LoginSubject, SimulatedLogin>.
template <typename Subject, typename Each>
std::unique_ptr<Subject> makeSubject() {
    return std::make_unique<Each>();
}

/// A test that every adapter passes; each has a subject of its own.
template <typename Subject>
class ContractTest : public ::testing::TestWithParam<SubjectMaker<Subject>> {
protected:
    std::unique_ptr<Subject> subject = this->GetParam()();
};

} // namespace quorvane
