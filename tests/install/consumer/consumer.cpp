// A host outside the tree: it sees only the installed headers and library.
// Given a folder, it makes a book there, lists its persons through the late
// binding and checks that the library's errors reach it as zelvo::Error.
// Prints "persons N" and exits 0 when all went as a host expects.
#include <zelvo/addressbook.h>
#include <zelvo/dispatch.h>
#include <zelvo/error.h>

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: consumer FOLDER\n";
        return 2;
    }
    // Typed, as a C++ host holds the class.
    zelvo::cAddressbook typed;
    typed.AppPath = argv[1];
    std::string path;
    typed.CorrectDB(path);
    if (path != typed.GetDatabasename()) {
        std::cerr << "CorrectDB gave '" << path << "', not the book's path\n";
        return 1;
    }

    // Late-bound, as a script holds it.
    auto book = zelvo::CreateObject("Zelvolib.cAddressbook");
    book->SetProperty("AppPath", zelvo::Variant(argv[1]));
    book->SetProperty("Flags", zelvo::Variant("1"));
    zelvo::ui::ListView list;
    list.ColumnHeaders().Add("Name");
    std::vector<zelvo::DispArg> args{&list, nullptr};
    book->Invoke("Navigate", args);
    std::cout << "persons " << list.ListItems().Count() << "\n";

    try {
        zelvo::CreateObject("NoSuchClass");
        std::cerr << "an unknown class was created\n";
        return 1;
    } catch (const zelvo::Error& e) {
        if (e.number() != 429) {
            std::cerr << "unknown class: error " << e.number() << "\n";
            return 1;
        }
    }
    return 0;
}
