#pragma once

/// What dynamic_cast would do, as an answer instead of a null pointer or std::bad_cast. `To` is the bare
/// class; the constness of the object carries over to the pointer that the two-argument forms fill in.
///
///     if (nex_canDynamicCastPtr<nex_CommandException>(exception)) ...
///     const nex_CommandException* command;
///     if (nex_canDynamicCastRef(exception, command)) { command->PythonType(); }

/// True when `object` is a `To`; false for null.
template <class To, class From> bool nex_canDynamicCastPtr(From* object) noexcept
{
    return dynamic_cast<const volatile To*>(object) != nullptr;
}

/// The same; `target` receives the object as a `To`, or null.
template <class To, class From> bool nex_canDynamicCastPtr(From* object, To*& target) noexcept
{
    target = dynamic_cast<To*>(object);
    return target != nullptr;
}

/// True when `object` is a `To`.
template <class To, class From> bool nex_canDynamicCastRef(From& object) noexcept
{
    return nex_canDynamicCastPtr<To>(&object);
}

/// The same; `target` receives the object as a `To`, or null.
template <class To, class From> bool nex_canDynamicCastRef(From& object, To*& target) noexcept
{
    return nex_canDynamicCastPtr(&object, target);
}
