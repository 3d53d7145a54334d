#include "Platform/Gtk/Activation.h"

#include <utility>

namespace platform {

namespace {

const Activation* present = nullptr;

}  // namespace

ActivationScope::ActivationScope(Activation activation)
    : activation_(std::move(activation)), outer_(std::exchange(present, &activation_)) {}

ActivationScope::~ActivationScope() { present = outer_; }

const Activation* presentActivation() { return present; }

}  // namespace platform
