// Commands: a call bound to its target, handed over as a small object.
//
// A command is handed over with its ownership or by reference, as each interface says, and is
// destroyed through its virtual destructor. Whoever adds a command to a provider removes it before
// either side dies.
#pragma once

namespace Lathe::Core {

class ICommand {
public:
    virtual void Execute() = 0;
    virtual ~ICommand() = default;
};

template <class A>
class TIArgCommand {
public:
    virtual void Execute(A argument) = 0;
    virtual ~TIArgCommand() = default;
};

template <class R>
class TIReturnCommand {
public:
    virtual R Execute() = 0;
    virtual ~TIReturnCommand() = default;
};

template <class A, class R>
class TIArgReturnCommand {
public:
    virtual R Execute(A argument) = 0;
    virtual ~TIArgReturnCommand() = default;
};

// A member function without arguments. The object must outlive the command; so for all below.
template <class C>
class TCommand : public ICommand {
public:
    using Member = void (C::*)();

    TCommand(C& object, Member member) : m_Object(&object), m_Member(member) {}
    void Execute() override { (m_Object->*m_Member)(); }

private:
    C* m_Object;
    Member m_Member;
};

template <class C>
class TConstCommand : public ICommand {
public:
    using Member = void (C::*)() const;

    TConstCommand(const C& object, Member member) : m_Object(&object), m_Member(member) {}
    void Execute() override { (m_Object->*m_Member)(); }

private:
    const C* m_Object;
    Member m_Member;
};

template <class C, class A>
class TArgCommand : public TIArgCommand<A> {
public:
    using Member = void (C::*)(A);

    TArgCommand(C& object, Member member) : m_Object(&object), m_Member(member) {}
    void Execute(A argument) override { (m_Object->*m_Member)(argument); }

private:
    C* m_Object;
    Member m_Member;
};

template <class C, class A>
class TConstArgCommand : public TIArgCommand<A> {
public:
    using Member = void (C::*)(A) const;

    TConstArgCommand(const C& object, Member member) : m_Object(&object), m_Member(member) {}
    void Execute(A argument) override { (m_Object->*m_Member)(argument); }

private:
    const C* m_Object;
    Member m_Member;
};

template <class C, class R>
class TReturnCommand : public TIReturnCommand<R> {
public:
    using Member = R (C::*)();

    TReturnCommand(C& object, Member member) : m_Object(&object), m_Member(member) {}
    R Execute() override { return (m_Object->*m_Member)(); }

private:
    C* m_Object;
    Member m_Member;
};

template <class C, class A, class R>
class TArgReturnCommand : public TIArgReturnCommand<A, R> {
public:
    using Member = R (C::*)(A);

    TArgReturnCommand(C& object, Member member) : m_Object(&object), m_Member(member) {}
    R Execute(A argument) override { return (m_Object->*m_Member)(argument); }

private:
    C* m_Object;
    Member m_Member;
};

// An argument command that runs as a parameterless one, each time with the stored argument.
template <class T>
class TArgCommandWrapper : public ICommand {
public:
    // The inner command is not owned.
    TArgCommandWrapper(TIArgCommand<T>& command, T argument)
        : m_Command(&command), m_Argument(argument) {}
    void Execute() override { m_Command->Execute(m_Argument); }

private:
    TIArgCommand<T>* m_Command;
    T m_Argument;
};

} // namespace Lathe::Core
