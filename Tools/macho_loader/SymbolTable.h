#pragma once
#include <functional>
#include <map>
#include <string>

/** Functions and data by their names in C. */
using SymbolTable = std::map<std::string, void*, std::less<>>;
/** What each library offers, by its install name. */
using LibraryTable = std::map<std::string, SymbolTable, std::less<>>;

/** The address of a function as a table holds it. */
template <class Result, class... Arguments>
void* AddressOf(Result (*inFunction)(Arguments...))
{
    return reinterpret_cast<void*>(inFunction);
}
template <class Result, class... Arguments>
void* AddressOf(Result (*inFunction)(Arguments..., ...))
{
    return reinterpret_cast<void*>(inFunction);
}
