# zel_embed_images(target NUM file [NUM file ...] [DEPENDS targets...])
#
# Builds the PNG files into `target`, each under its resource number, so that
# CBitmap(NUM) finds it (as the file name bmpNNNNN.png). The files may be
# outputs of other targets; name those targets after DEPENDS.
#
# Embed into the executable or module itself: the generated table registers
# its images from a static constructor that nothing references, and a linker
# drops such an object when it sits in a static library.
function(zel_embed_images target)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "STATIC_LIBRARY")
    message(FATAL_ERROR "zel_embed_images(${target}): embed images into the executable or "
                        "module that links ${target}, not into a static library")
  endif()
  set(pairs ${ARG_UNPARSED_ARGUMENTS})
  list(LENGTH pairs count)
  math(EXPR odd "${count} % 2")
  if(count EQUAL 0 OR odd)
    message(FATAL_ERROR "zel_embed_images(${target}): expected NUM file pairs")
  endif()

  set(args "")
  set(files "")
  set(seen "")
  math(EXPR last "${count} - 1")
  foreach(i RANGE 0 ${last} 2)
    math(EXPR j "${i} + 1")
    list(GET pairs ${i} num)
    list(GET pairs ${j} file)
    if(NOT num MATCHES "^[0-9]+$" OR num GREATER 99999)
      message(FATAL_ERROR "zel_embed_images(${target}): '${num}' is not a resource number")
    endif()
    if(num IN_LIST seen)
      message(FATAL_ERROR "zel_embed_images(${target}): resource ${num} given twice")
    endif()
    list(APPEND seen ${num})
    get_filename_component(file "${file}" ABSOLUTE)
    string(LENGTH "${num}" digits)
    set(name "${num}")
    while(digits LESS 5)
      set(name "0${name}")
      math(EXPR digits "${digits} + 1")
    endwhile()
    list(APPEND args "bmp${name}.png" "${file}")
    list(APPEND files "${file}")
  endforeach()

  set(output "${CMAKE_CURRENT_BINARY_DIR}/${target}_images.cpp")
  add_custom_command(
    OUTPUT "${output}"
    COMMAND zel_embed_images "${output}" ${args}
    DEPENDS zel_embed_images ${files} ${ARG_DEPENDS}
    COMMENT "Embedding images into ${target}"
    VERBATIM)
  target_sources(${target} PRIVATE "${output}")
  target_include_directories(${target} PRIVATE "${ZEL_VSTGUI_DIR}")
endfunction()
