// A text that many instances of a class have.
#ifndef SWITCHACCESS_REPEATED_TEXT_H
#define SWITCHACCESS_REPEATED_TEXT_H

#include <cimple/cimple.h>

namespace cimple
{

// A text that one instance after the other has in common, in one representation.
class Repeated_Text
{
  public:
    const String& of(const char* text)
    {
        if (_text != text)
            _text = text;
        return _text;
    }

  private:
    String _text;
};

} // namespace cimple

#endif
