# Warning and sanitizer flags, applied per target.
function(zu_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
endfunction()

function(zu_set_sanitizers target)
  if(ZU_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  endif()
endfunction()
