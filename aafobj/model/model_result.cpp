#include "aafobj/model/model_result.h"

namespace aafobj {

AAFRESULT aaf_result(Result result) {
  switch (result) {
    case Result::ok:
      return AAFRESULT_SUCCESS;
    case Result::invalid_argument:
      return AAFRESULT_INVALID_PARAM;
    case Result::bad_name:
      return AAFRESULT_BADCONTAINER;
    case Result::not_found:
      return AAFRESULT_FILE_NOT_FOUND;
    case Result::already_exists:
      return AAFRESULT_FILE_EXISTS;
    case Result::wrong_type:
      return AAFRESULT_BADCONTAINER;
    case Result::read_only:
      return AAFRESULT_NOT_WRITEABLE;
    case Result::closed:
      return AAFRESULT_NOT_OPEN;
    case Result::not_aaf:
      return AAFRESULT_NOT_AAF_FILE;
    case Result::unsupported:
      return AAFRESULT_FILEREV_NOT_SUPP;
    case Result::damaged:
    case Result::overlapping:
    case Result::truncated:
      return AAFRESULT_BADCONTAINER;
    case Result::too_large:
      return AAFRESULT_BAD_SIZE;
    case Result::no_space:
      return AAFRESULT_CONTAINERWRITE;
    case Result::access_denied:
      return AAFRESULT_OPEN_FAILURE;
    case Result::io_error:
      return AAFRESULT_READ_FAILURE;
  }
  return AAFRESULT_UNEXPECTED_EXCEPTION;
}

}  // namespace aafobj
