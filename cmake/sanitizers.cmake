# The sanitizer build instruments every target, so tests and the program itself run checked.
if(VANTLE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  # GCC 12 reports std::optional<std::string> and std::function members as maybe uninitialised
  # once the address sanitizer has rewritten their code; the optimised build keeps this warning
  # as an error, so nothing it would find goes unseen.
  add_compile_options(-Wno-maybe-uninitialized)
endif()
