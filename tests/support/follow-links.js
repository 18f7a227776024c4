// Follows the links within a document: a line each with the page, the area, the page that it leads to, and the area there. Pages
// from 1, areas as left, bottom, right, top in points from the bottom left corner of their page.
var document = new Document(scriptArgs[0]);

for (var i = 0; i < document.countPages(); ++i) {
  var page = document.loadPage(i);
  var height = page.bound()[3];
  page.getLinks().forEach(function (link) {
    if (link.uri.charAt(0) !== "#") return;
    var to = document.resolveLink(link.uri);
    if (to.type !== "FitR") return;
    var box = link.bounds; // from the top left corner, other than the area that a link leads to
    print(i + 1, box[0], height - box[3], box[2], height - box[1],
          to.page + 1, to.x, to.y, to.x + to.width, to.y + to.height);
  });
}
