// Parses Android build files with the build system's own C and C++ module types. Unknown module types, unknown properties
// and values of the wrong type are errors.
package main

import (
	"fmt"
	"os"

	"android/soong/android"
	_ "android/soong/cc"
)

func main() {
	ctx := android.NewContext()
	ctx.Register()
	_, errs := ctx.ParseFileList("/", os.Args[1:], nil)
	for _, err := range errs {
		fmt.Println(err)
	}
	if len(errs) > 0 {
		os.Exit(1)
	}
}
